#include "platform/macos/MacLoginItem.h"

#include "platform/macos/FoundationText.h"
#include "platform/macos/plain/FrameworkNumbers.h"

#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>

namespace cirrovane {
namespace {

static_assert(SMAppServiceStatusNotRegistered == 0 && SMAppServiceStatusEnabled == 1 &&
              SMAppServiceStatusRequiresApproval == 2 && SMAppServiceStatusNotFound == 3);

std::optional<Failure> complaint(const Bundle& bundle) {
  return isApplicationBundle(bundle) ? std::nullopt
                                     : std::optional(Failure{"Only an installed application can be opened at login."});
}

}  // namespace

Result<LoginItemState> MacLoginItem::state() const {
  if (auto failure = complaint(bundle_)) {
    return *failure;
  }
  @autoreleasepool {
    return loginItemStateOf(SMAppService.mainAppService.status);
  }
}

std::optional<Failure> MacLoginItem::setOn(bool isOn) {
  if (auto failure = complaint(bundle_)) {
    return failure;
  }
  @autoreleasepool {
    SMAppService* service = SMAppService.mainAppService;
    NSError* error = nil;
    const bool isDone = isOn ? [service registerAndReturnError:&error] : [service unregisterAndReturnError:&error];
    // A user who once forbade it has the registration fail, and is told to approve.
    if (isDone || (isOn && service.status == SMAppServiceStatusRequiresApproval)) {
      return std::nullopt;
    }
    return Failure{error != nil ? bytesOf(error.localizedDescription) : "The system did not say why."};
  }
}

void MacLoginItem::openSystemSettings() {
  @autoreleasepool {
    [SMAppService openSystemSettingsLoginItems];
  }
}

}  // namespace cirrovane
