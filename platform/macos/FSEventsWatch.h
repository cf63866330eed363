#pragma once

#include "platform/FolderWatch.h"

#include <memory>
#include <string>

namespace cirrovane {

/// A watch by FSEvents that heeds the machine's sleep. `ownFolder` is where this program keeps its files.
std::unique_ptr<FolderWatch> makeFSEventsWatch(FolderWatchListener& listener, const std::string& ownFolder);

}  // namespace cirrovane
