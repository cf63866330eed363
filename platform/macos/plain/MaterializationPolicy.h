#pragma once

#include <optional>

namespace cirrovane {

/// Whose reading a policy governs: the calling thread's, or everybody's in this process and the processes it starts.
enum class PolicyScope { thread, process };

/// The number by which the system knows the policy that nothing is fetched from the cloud because it is read.
inline constexpr int kMaterializationOff = 1;

/// The system's two calls for the policy on items whose content is only in the cloud. A class, so that a test can stand
/// in for a system that refuses.
class MaterializationCalls {
 public:
  virtual ~MaterializationCalls() = default;
  /// The policy by the system's number; absent when the system does not tell.
  virtual std::optional<int> policy(PolicyScope scope) const = 0;
  /// False when the system refuses.
  virtual bool setPolicy(PolicyScope scope, int policy) const = 0;
};

/// Forbids the calling thread, for as long as this lives, to fetch what is only in the cloud by reading it. Ends on the
/// thread that it began on, and then gives the thread back the policy that it had.
class NoMaterialization {
 public:
  explicit NoMaterialization(const MaterializationCalls& calls);
  ~NoMaterialization();

  NoMaterialization(const NoMaterialization&) = delete;
  NoMaterialization& operator=(const NoMaterialization&) = delete;

  /// Whether reading is safe: false when the system refused.
  bool isInForce() const { return isInForce_; }

 private:
  const MaterializationCalls& calls_;
  /// Absent when nothing has to be given back.
  std::optional<int> former_;
  bool isInForce_ = false;
};

}  // namespace cirrovane
