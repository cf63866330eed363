// Runs a command with its output thrown away and says what it cost. A small program of its own, because the kernel
// counts the memory of whoever starts a process as that process's first: started from a large one, a peak below that
// one's size cannot be seen.

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

int main(int argumentCount, char** arguments) {
  if (argumentCount < 2) {
    std::fprintf(stderr,
                 "Usage: measure COMMAND [ARGUMENT...]\n"
                 "Prints: seconds, CPU seconds, peak memory in KiB, exit status\n");
    return 2;
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);

  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  if (const int error = posix_spawnp(&child, arguments[1], &actions, nullptr, arguments + 1, environ); error != 0) {
    std::fprintf(stderr, "measure: %s: %s\n", arguments[1], std::strerror(error));
    return 1;
  }
  int status = 0;
  rusage usage{};
  while (wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {
  }
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;

  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  std::printf("%.6f %.6f %ld %d\n", elapsed.count(), seconds(usage.ru_utime) + seconds(usage.ru_stime), usage.ru_maxrss,
              WIFEXITED(status) ? WEXITSTATUS(status) : -1);
  return 0;
}
