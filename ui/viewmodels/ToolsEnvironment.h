#pragma once

#include "platform/Clipboard.h"
#include "platform/Workspace.h"
#include "ui/viewmodels/ToolInstalls.h"

namespace cirrovane {

/// What the page of tools needs besides the results. It outlives the page.
struct ToolsEnvironment {
  ToolInstalls& installs;
  Clipboard& clipboard;
  Workspace& workspace;
};

}  // namespace cirrovane
