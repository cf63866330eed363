#pragma once

#include "tests/support/FakeCommandRunner.h"

#include <string>

namespace cirrovane {

/// A Mac's answers, without the time that its commands take to give them.
inline test::FakeCommandRunner macAnswers() {
  test::FakeCommandRunner commands;
  for (const char* name : {"bird", "cloudd", "fileproviderd"}) {
    commands.answer({"/usr/bin/pgrep", "-x", name}, std::string("312\n"));
  }
  commands.answer({"/usr/sbin/route", "-n", "get", "default"}, std::string("    gateway: 192.168.1.1\n"));
  commands.answer({"/usr/sbin/scutil", "-r", "www.icloud.com"}, std::string("Reachable\n"));
  commands.answer({"/usr/bin/dscacheutil", "-q", "host", "-a", "name", "www.icloud.com"},
                  std::string("name: www.icloud.com\nip_address: 23.1.2.3\n"));
  commands.answer({"/usr/sbin/sysctl", "vm.swapusage"},
                  std::string("vm.swapusage: total = 2048.00M  used = 1017.50M  free = 1030.50M  (encrypted)\n"));
  commands.answer({"/usr/bin/top", "-l", "1", "-n", "0"},
                  std::string("Processes: 598 total, 6 running, 592 sleeping, 2847 threads\n"
                              "Load Avg: 3.10, 3.23, 3.11\n"
                              "CPU usage: 20.86% user, 12.94% sys, 66.18% idle\n"
                              "PhysMem: 31G used (8595M wired, 3102M compressor), 344M unused.\n"));
  commands.answer({"/usr/bin/vm_stat"}, std::string("Mach Virtual Memory Statistics: (page size of 16384 bytes)\n"
                                                    "Pages active:                            301234.\n"
                                                    "Pages wired down:                        151234.\n"
                                                    "Pages occupied by compressor:            121234.\n"));
  return commands;
}

}  // namespace cirrovane
