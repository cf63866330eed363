#pragma once

#include "diagnostics/ToolInstaller.h"
#include "platform/Clipboard.h"
#include "platform/Executor.h"
#include "platform/Workspace.h"

namespace cirrovane {

/// What pages with errands of their own need besides the results. It outlives them.
struct ToolsEnvironment {
  ToolInstaller installer;
  Clipboard& clipboard;
  Workspace& workspace;
  /// Takes results of the background over.
  Executor& mainExecutor;
};

}  // namespace cirrovane
