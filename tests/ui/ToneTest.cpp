#include "ui/viewmodels/Tone.h"

#include <QMetaEnum>
#include <QSet>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

TEST(Tone, healthStates_haveTheColoursOfALight) {
  EXPECT_EQ(Tones::color(toneOf(HealthState::safe)).name(), "#30d158");
  EXPECT_EQ(Tones::color(toneOf(HealthState::warning)).name(), "#ffd60a");
  EXPECT_EQ(Tones::color(toneOf(HealthState::danger)).name(), "#ff6961");
}

TEST(Tone, noStateYet_isNeitherGoodNorBad) {
  EXPECT_EQ(toneOf(std::nullopt), Tone::Neutral);
}

TEST(Tone, severities_haveTheirTones) {
  EXPECT_EQ(toneOf(DiagnosticSeverity::ok), Tone::Good);
  EXPECT_EQ(toneOf(DiagnosticSeverity::info), Tone::Info);
  EXPECT_EQ(toneOf(DiagnosticSeverity::warning), Tone::Warning);
  EXPECT_EQ(toneOf(DiagnosticSeverity::error), Tone::Critical);
}

TEST(Tone, whatIsNone_isNotShownAsGood) {
  EXPECT_EQ(Tones::color(static_cast<Tone>(99)), Tones::color(Tone::Critical));
}

TEST(Tone, tones_areToldApartByTheirColours) {
  const QMetaEnum tones = QMetaEnum::fromType<Tone>();
  QSet<QRgb> colours;
  for (int index = 0; index < tones.keyCount(); ++index) {
    colours.insert(Tones::color(static_cast<Tone>(tones.value(index))).rgba());
  }
  EXPECT_EQ(colours.size(), tones.keyCount());
}

}  // namespace
}  // namespace cirrovane::test
