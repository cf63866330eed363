// The attribute that holds a file's cloud state: any program can write any bytes into it.

#include "base/UTF8.h"
#include "fuzz/Require.h"
#include "platform/linux/walk/ICloudAttribute.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace cirrovane {
namespace {

using Parsed = std::optional<ResourceValues>;

bool areEqual(const Parsed& lhs, const Parsed& rhs) {
  const auto fields = [](const ResourceValues& values) {
    return std::tie(values.isDirectory, values.isUbiquitousItem, values.isUploaded, values.isUploading,
                    values.hasUnresolvedConflicts, values.downloadingStatus, values.uploadingError,
                    values.downloadingError, values.contentModificationDate);
  };
  return lhs.has_value() == rhs.has_value() && (!lhs || fields(*lhs) == fields(*rhs));
}

void checkText(const std::optional<std::string_view>& text, std::string_view bytes) {
  if (!text) {
    return;
  }
  const std::less_equal<const char*> isNotBehind;
  require(
      isNotBehind(bytes.data(), text->data()) && isNotBehind(text->data() + text->size(), bytes.data() + bytes.size()),
      "a text lies inside of the attribute");
  require(isValidUTF8(*text), "a text is UTF-8");
  require(text->find('\n') == std::string_view::npos, "a text is one line");
}

void check(std::string_view bytes) {
  const Parsed parsed = parseICloudAttribute(bytes);
  if (parsed) {
    require(isValidUTF8(bytes), "what is accepted is UTF-8");
    require(!parsed->isDirectory && !parsed->contentModificationDate, "only the attribute's own values are set");
    checkText(parsed->uploadingError, bytes);
    checkText(parsed->downloadingError, bytes);
  }

  const std::string copy(bytes);
  require(areEqual(parsed, parseICloudAttribute(copy)), "equal bytes mean the same");
  const std::string padded = "\n \t\r\n" + copy + "\n\r\n";
  require(areEqual(parsed, parseICloudAttribute(padded)), "blank lines mean nothing");
  const std::string extended = "later=addition\n" + copy + "\nlater=\n=\n";
  require(areEqual(parsed, parseICloudAttribute(extended)), "keys that are not known mean nothing");
  require(!parseICloudAttribute(copy + "\nisUploaded=yes\n"), "one bad value spoils the attribute");
  require(!parseICloudAttribute(copy + "\nisListable=yes\n"), "one bad value spoils the attribute");
  const std::string stated = copy + "\nisExcludedFromSync=yes\nisSyncPaused=\nisListable=false\nisListable=true";
  require(areEqual(parsed, parseICloudAttribute(stated)), "what is said of syncing and listing is no item's value");
  require(!allowsListing(copy + "\nisListable=false"), "the last word forbids the listing");
  require(allowsListing(copy + "\nisListable=true\n"), "the last word allows the listing");
  require(allowsListing(copy) == allowsListing(padded), "blank lines mean nothing");
  if (parsed) {
    const std::string overruled = copy + "\nisUploaded=false\nuploadingError=last";
    const Parsed last = parseICloudAttribute(overruled);
    require(last && last->isUploaded == false && last->uploadingError == "last", "the last of repeated keys holds");
  }
}

}  // namespace
}  // namespace cirrovane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::check({reinterpret_cast<const char*>(data), size});
  return 0;
}
