#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {

/// How hot the machine is, in the system's own judgement.
enum class ThermalState { nominal, fair, serious, critical };

/// How many processes wanted the processors, on average over a time that ended now.
struct LoadAverages {
  double oneMinute = 0;
  double fiveMinutes = 0;
  double fifteenMinutes = 0;
};

/// What the system says of one battery or other source of power. An absent value is one that it does not give.
struct PowerSource {
  /// Charge now, in the unit of maximumCapacity.
  std::optional<double> currentCapacity;
  std::optional<std::int64_t> maximumCapacity;
  std::optional<bool> isCharging;
  /// Whether the mains supply it, so that nothing is drawn from it.
  std::optional<bool> isOnMains = std::nullopt;
};

/// The machine's condition beyond its files. Every call observes afresh; callable on any thread.
class SystemInformation {
 public:
  virtual ~SystemInformation() = default;

  /// Whether the user's session is signed in to iCloud.
  virtual bool hasUbiquityIdentityToken() const = 0;
  /// Whether an application with this bundle identifier runs. A Mac's main thread answers; it must not be waiting for
  /// the caller.
  virtual bool isApplicationRunning(std::string_view bundleIdentifier) const = 0;
  /// Absent when the system does not say, or says what nobody knew when this was written.
  virtual std::optional<ThermalState> thermalState() const = 0;
  virtual bool isLowPowerModeEnabled() const = 0;
  /// Seconds since the system started; 0 when unknown.
  virtual double systemUptime() const = 0;
  /// Bytes; 0 when unknown.
  virtual std::uint64_t physicalMemory() const = 0;
  /// A variable of the environment; absent when it is not set.
  virtual std::optional<std::string> environmentVariable(const std::string& name) const = 0;
  /// Absent unless the system gives all three.
  virtual std::optional<LoadAverages> loadAverages() const = 0;
  /// The sources that the system describes, in its own order.
  virtual std::vector<PowerSource> powerSources() const = 0;
};

}  // namespace cirrovane
