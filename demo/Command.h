#pragma once

#include <functional>
#include <iosfwd>

namespace CLI {
class App;
}

namespace cirrovane::demo {

/// What the command line asked for: does it and tells about it on the given stream. Throws what Failure.h holds.
using Action = std::function<void(std::ostream&)>;

/// A command's part in the command line: adds its subcommand, which sets `chosen` when the user asks for it.
void addCreateCommand(CLI::App& app, Action& chosen);
void addSettleCommand(CLI::App& app, Action& chosen);
void addUnsettleCommand(CLI::App& app, Action& chosen);
void addSetCommand(CLI::App& app, Action& chosen);
void addUploadCommand(CLI::App& app, Action& chosen);
void addFactCommand(CLI::App& app, Action& chosen);
void addProcessCommand(CLI::App& app, Action& chosen);
void addNetworkCommand(CLI::App& app, Action& chosen);

}  // namespace cirrovane::demo
