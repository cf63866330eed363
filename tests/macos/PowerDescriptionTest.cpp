#include "platform/macos/plain/PowerDescription.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

class FakeDescription final : public PowerDescription {
 public:
  std::optional<double> current;
  std::optional<double> maximum;
  std::optional<bool> isCharging;
  std::optional<std::string> state;

  std::optional<double> number(PowerKey key) const override {
    switch (key) {
      case PowerKey::currentCapacity:
        return current;
      case PowerKey::maximumCapacity:
        return maximum;
      case PowerKey::isCharging:
      case PowerKey::state:
        break;
    }
    ADD_FAILURE() << "this is no number";
    return std::nullopt;
  }
  std::optional<bool> boolean(PowerKey key) const override {
    EXPECT_EQ(key, PowerKey::isCharging);
    return isCharging;
  }
  std::optional<std::string> text(PowerKey key) const override {
    EXPECT_EQ(key, PowerKey::state);
    return state;
  }
};

TEST(PowerSourceOf, everyKeyAnswered_everyValueArrives) {
  FakeDescription description;
  description.current = 87;
  description.maximum = 100;
  description.isCharging = true;
  const PowerSource source = powerSourceOf(description);
  EXPECT_EQ(source.currentCapacity, 87.0);
  EXPECT_EQ(source.maximumCapacity, 100);
  EXPECT_EQ(source.isCharging, true);
}

TEST(PowerSourceOf, keysWithoutAnswer_areHandedOnAsAbsent) {
  const PowerSource source = powerSourceOf(FakeDescription());
  EXPECT_EQ(source.currentCapacity, std::nullopt);
  EXPECT_EQ(source.maximumCapacity, std::nullopt);
  EXPECT_EQ(source.isCharging, std::nullopt);
  EXPECT_EQ(source.isOnMains, std::nullopt);
}

TEST(PowerSourceOf, state_saysWhetherItIsDrawnFrom) {
  FakeDescription description;
  description.state = "AC Power";
  EXPECT_EQ(powerSourceOf(description).isOnMains, true);
  description.state = "Battery Power";
  EXPECT_EQ(powerSourceOf(description).isOnMains, false);
  description.state = "Off Line";
  EXPECT_EQ(powerSourceOf(description).isOnMains, std::nullopt);
}

TEST(PowerSourceOf, maximumThatIsNoWholeNumber_isAbsent) {
  FakeDescription description;
  description.maximum = 99.5;
  EXPECT_EQ(powerSourceOf(description).maximumCapacity, std::nullopt);
}

}  // namespace
}  // namespace cirrovane
