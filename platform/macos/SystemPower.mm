#include "platform/macos/SystemPower.h"

#include "platform/macos/DispatchQueue.h"
#include "platform/macos/FoundationText.h"

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>
#import <IOKit/IOKitLib.h>
#import <IOKit/IOMessage.h>
#import <IOKit/pwr_mgt/IOPMLib.h>
#include <cstdint>
#include <dispatch/dispatch.h>
#include <memory>
#include <string>
#include <utility>

namespace cirrovane {
namespace {

static_assert(power_message::canSleep == kIOMessageCanSystemSleep);
static_assert(power_message::willSleep == kIOMessageSystemWillSleep);
static_assert(power_message::willNotSleep == kIOMessageSystemWillNotSleep);
static_assert(power_message::hasPoweredOn == kIOMessageSystemHasPoweredOn);

/// The connection by which the system is answered. It lives as long as an answer may come.
struct RootPowerDomain {
  RootPowerDomain() = default;
  ~RootPowerDomain() {
    if (port != MACH_PORT_NULL) {
      IOServiceClose(port);
    }
  }
  RootPowerDomain(const RootPowerDomain&) = delete;
  RootPowerDomain& operator=(const RootPowerDomain&) = delete;

  io_connect_t port = MACH_PORT_NULL;
};

class SystemPowerNotices final : public PowerNotices {
 public:
  explicit SystemPowerNotices(PowerSystem::SleepTold tell)
      : tell_(std::move(tell)), queue_(dispatch_queue_create("com.quillmere.Cirrovane.power", DISPATCH_QUEUE_SERIAL)) {
    domain_->port = IORegisterForSystemPower(this, &notifications_, heard, &notifier_);
    if (isHeard()) {
      IONotificationPortSetDispatchQueue(notifications_, queue_);
    }
  }
  ~SystemPowerNotices() override {
    if (!isHeard()) {
      return;
    }
    // On the queue, so that no message is being told meanwhile.
    dispatch_sync(queue_, ^{
      IODeregisterForSystemPower(&notifier_);
      IONotificationPortDestroy(notifications_);
    });
  }

  bool isHeard() const { return domain_->port != MACH_PORT_NULL && notifications_ != nullptr; }

 private:
  static void heard(void* _Null_unspecified self, io_service_t /*service*/, std::uint32_t message,
                    void* _Null_unspecified argument) {
    @autoreleasepool {
      const auto* const notices = static_cast<const SystemPowerNotices*>(self);
      // With the messages that wait for no answer it is no notification's number.
      const bool isAwaited = message == power_message::canSleep || message == power_message::willSleep;
      const auto notification = reinterpret_cast<std::intptr_t>(argument);
      notices->tell_(message, [domain = notices->domain_, isAwaited, notification] {
        if (isAwaited) {
          IOAllowPowerChange(domain->port, notification);
        }
      });
    }
  }

  const PowerSystem::SleepTold tell_;
  const dispatch_queue_t queue_;
  const std::shared_ptr<RootPowerDomain> domain_ = std::make_shared<RootPowerDomain>();
  IONotificationPortRef notifications_ = nullptr;
  io_object_t notifier_ = MACH_PORT_NULL;
};

/// The system takes an assertion back by itself when its program ends.
class PowerAssertion final : public PowerHold {
 public:
  explicit PowerAssertion(IOPMAssertionID identifier) : identifier_(identifier) {}
  ~PowerAssertion() override { IOPMAssertionRelease(identifier_); }
  PowerAssertion(const PowerAssertion&) = delete;
  PowerAssertion& operator=(const PowerAssertion&) = delete;

 private:
  const IOPMAssertionID identifier_;
};

std::unique_ptr<PowerNotices> hearSleep(PowerSystem::SleepTold tell) {
  @autoreleasepool {
    auto notices = std::make_unique<SystemPowerNotices>(std::move(tell));
    return notices->isHeard() ? std::move(notices) : nullptr;
  }
}

Result<std::unique_ptr<PowerHold>> assertAwake(const std::string& reason) {
  @autoreleasepool {
    NSString* text = textOf(reason);
    IOPMAssertionID identifier = 0;
    const IOReturn made =
        IOPMAssertionCreateWithName(kIOPMAssertionTypePreventUserIdleSystemSleep, kIOPMAssertionLevelOn,
                                    (__bridge CFStringRef)(text != nil ? text : @"Cirrovane"), &identifier);
    if (made != kIOReturnSuccess) {
      return Failure{"The system does not stay awake for Cirrovane (error " + std::to_string(made) + ")."};
    }
    return std::unique_ptr<PowerHold>(std::make_unique<PowerAssertion>(identifier));
  }
}

/// Owns what an Apple event is made of.
class EventDescriptor {
 public:
  EventDescriptor() = default;
  ~EventDescriptor() { AEDisposeDesc(&descriptor_); }
  EventDescriptor(const EventDescriptor&) = delete;
  EventDescriptor& operator=(const EventDescriptor&) = delete;

  AEDesc* _Nonnull get() { return &descriptor_; }

 private:
  AEDesc descriptor_ = {typeNull, nullptr};
};

/// Sends the login window the event that the Apple menu's command sends once its question is answered.
std::int32_t sendToLoginWindow(PowerAct act) {
  constexpr ProcessSerialNumber kLoginWindow = {0, kSystemProcess};
  EventDescriptor address;
  std::int32_t error = AECreateDesc(typeProcessSerialNumber, &kLoginWindow, sizeof(kLoginWindow), address.get());
  if (error != noErr) {
    return error;
  }
  EventDescriptor event;
  error = AECreateAppleEvent(kCoreEventClass, act == PowerAct::sleep ? kAESleep : kAEShutDown, address.get(),
                             kAutoGenerateReturnID, kAnyTransactionID, event.get());
  if (error != noErr) {
    return error;
  }
  EventDescriptor reply;
  return AESendMessage(event.get(), reply.get(), kAENoReply, kAEDefaultTimeout);
}

}  // namespace

PowerSystem systemPower() {
  PowerSystem system;
  system.hearSleep = hearSleep;
  system.keepAwake = assertAwake;
  system.perform = sendToLoginWindow;
  return system;
}

std::unique_ptr<PowerGate> makeSystemPowerGate(PowerGateListener& listener, PowerSystem system) {
  return std::make_unique<AnnouncedPowerGate>(listener, std::move(system), std::make_shared<DispatchQueue>());
}

}  // namespace cirrovane
