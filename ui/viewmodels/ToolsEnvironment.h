#pragma once

#include "platform/Clipboard.h"
#include "platform/Executor.h"
#include "platform/Workspace.h"
#include "ui/viewmodels/ToolInstalls.h"

namespace cirrovane {

/// What pages with errands of their own need besides the results. It outlives them.
struct ToolsEnvironment {
  ToolInstalls& installs;
  Clipboard& clipboard;
  Workspace& workspace;
  /// Takes over what was found out beside the main thread.
  Executor& mainExecutor;
};

}  // namespace cirrovane
