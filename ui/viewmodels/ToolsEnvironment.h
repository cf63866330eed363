#pragma once

#include "diagnostics/ToolInstaller.h"
#include "platform/Clipboard.h"
#include "platform/Executor.h"
#include "platform/Workspace.h"

namespace cirrovane {

/// What the page of tools needs besides the results; outlives it.
struct ToolsEnvironment {
  ToolInstaller installer;
  Clipboard& clipboard;
  Workspace& workspace;
  /// Where what was found out in the background is taken over.
  Executor& mainExecutor;
};

}  // namespace cirrovane
