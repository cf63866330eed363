#include "ui/WhoDraws.h"

#include "platform/CommandRunner.h"
#include "platform/posix/ChildProcess.h"
#include "ui/DrawingMeans.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace cirrovane {
namespace {

constexpr std::chrono::seconds kRendererLimit{3};

std::optional<std::string> askForRendererName() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  const auto result = runChild(program.native(), {kTellRendererOption}, CommandOutput::collected, {}, kRendererLimit);
  return result && result->hasSucceeded() ? toldRendererName(result->output) : std::nullopt;
}

}  // namespace

std::future<bool> askWhoDraws() {
  const DrawingMeans means{
      .isChosen = isDrawingChosen(), .hasDevice = hasGraphicsDevice("/dev"), .rendererName = askForRendererName};
  return std::async(std::launch::async, [means] { return isPainterWanted(means); });
}

}  // namespace cirrovane
