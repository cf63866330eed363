#include "platform/macos/plain/ResourceDictionary.h"

namespace cirrovane {

DownloadingStatus downloadingStatusOf(std::string_view text, const DownloadingStatusNames& names) {
  if (text == names.current) {
    return DownloadingStatus::current;
  }
  return text == names.downloaded ? DownloadingStatus::downloaded : DownloadingStatus::notDownloaded;
}

}  // namespace cirrovane
