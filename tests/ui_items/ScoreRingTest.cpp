#include "tests/ui_items/Application.h"
#include "ui/items/ScoreRing.h"

#include <QImage>
#include <algorithm>
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

const QColor kGreen(48, 209, 88);
const QColor kYellow(255, 214, 10);
const QColor kOrange(255, 159, 10);
const QColor kRed(255, 69, 58);
const QColor kTrack(255, 255, 255, 31);

class ScoreRingTest : public ApplicationTest {
 protected:
  static constexpr double kDiameter = 160;
  static constexpr double kStroke = 14;

  ScoreRingTest() {
    ring_.setProperty("strokeWidth", kStroke);
    ring_.setProperty("shadowRadius", 12.0);
    ring_.setProperty("tone", QVariant::fromValue(Tone::Good));
    ring_.setProperty("track", kTrack);
    ring_.setProperty("green", kGreen);
    ring_.setProperty("yellow", kYellow);
    ring_.setProperty("orange", kOrange);
    ring_.setProperty("red", kRed);
    const double size = kDiameter + 2 * ring_.glowMargin();
    ring_.setSize({size, size});
  }

  void paint(double progress) {
    ring_.setProgress(progress);
    image_ = QImage(ring_.size().toSize(), QImage::Format_ARGB32_Premultiplied);
    image_.fill(Qt::transparent);
    QPainter painter(&image_);
    ring_.paint(&painter);
  }

  /// The colour at a share of the way around, clockwise from the top, and a distance from the middle of the stroke.
  QColor at(double share, double outwards = 0) const {
    const double angle = 2 * std::numbers::pi * share;
    const double radius = (kDiameter - kStroke) / 2 + outwards;
    const double middle = ring_.width() / 2;
    return image_.pixelColor(static_cast<int>(middle + radius * std::sin(angle)),
                             static_cast<int>(middle - radius * std::cos(angle)));
  }

  bool hasArcAt(double share) const { return at(share).alpha() > 150; }

  ScoreRing ring_;
  QImage image_;
};

TEST_F(ScoreRingTest, zero_drawsTheTrackAlone) {
  paint(0);
  for (int step = 0; step < 360; ++step) {
    EXPECT_EQ(at(step / 360.0), kTrack) << step;
  }
  for (int y = 0; y < image_.height(); ++y) {
    for (int x = 0; x < image_.width(); ++x) {
      ASSERT_LE(image_.pixelColor(x, y).alpha(), kTrack.alpha()) << x << ", " << y;
    }
  }
}

TEST_F(ScoreRingTest, half_reachesFromTopToBottomClockwise) {
  paint(50);
  for (const double share : {0.01, 0.1, 0.25, 0.4, 0.49}) {
    EXPECT_TRUE(hasArcAt(share)) << share;
  }
  for (const double share : {0.56, 0.65, 0.75, 0.9, 0.94}) {
    EXPECT_FALSE(hasArcAt(share)) << share;
  }
  // Away from the arc's ends the track is as it was.
  EXPECT_EQ(at(0.75), kTrack);
}

TEST_F(ScoreRingTest, ends_areRoundAndOfTheirOwnColour) {
  ring_.setProperty("tone", QVariant::fromValue(Tone::Critical));
  paint(50);
  // Five points before the top, within the cap of seven.
  const double before = 1 - 5 / (2 * std::numbers::pi * (kDiameter - kStroke) / 2);
  EXPECT_GT(at(before).alpha(), 150);
  EXPECT_NEAR(at(before).green(), kOrange.green(), 3);
}

TEST_F(ScoreRingTest, hundred_closesWithoutSeam) {
  for (const Tone tone : {Tone::Good, Tone::Caution, Tone::Critical}) {
    ring_.setProperty("tone", QVariant::fromValue(tone));
    paint(100);
    constexpr int kSteps = 1440;
    for (int step = 0; step < kSteps; ++step) {
      const QColor here = at(static_cast<double>(step) / kSteps);
      const QColor next = at(static_cast<double>(step + 1) / kSteps);
      ASSERT_GT(here.alpha(), 150) << static_cast<int>(tone) << " " << step;
      ASSERT_LE(std::abs(here.alpha() - next.alpha()), 8) << static_cast<int>(tone) << " " << step;
      ASSERT_LE(std::abs(here.red() - next.red()), 8) << static_cast<int>(tone) << " " << step;
      ASSERT_LE(std::abs(here.green() - next.green()), 8) << static_cast<int>(tone) << " " << step;
    }
  }
}

TEST_F(ScoreRingTest, shortOfHundred_neverLooksClosed) {
  for (const double progress : {96.0, 97.5, 99.0, 99.9}) {
    paint(progress);
    int open = 0;
    for (int step = 1300; step < 1440; ++step) {
      open += hasArcAt(step / 1440.0) ? 0 : 1;
    }
    EXPECT_GT(open, 0) << progress;
  }
}

TEST_F(ScoreRingTest, beyondTheScale_isTheNearerEnd) {
  paint(100);
  const QImage full = image_;
  paint(101.1);
  EXPECT_EQ(image_, full);
  EXPECT_EQ(ring_.number(), "100");
  paint(0);
  const QImage empty = image_;
  paint(-2);
  EXPECT_EQ(image_, empty);
  EXPECT_EQ(ring_.number(), "0");
}

TEST_F(ScoreRingTest, glow_isSeenAndEndsWithinTheItem) {
  for (const double radius : {4.0, 12.0, 30.0}) {
    ring_.setProperty("shadowRadius", radius);
    const double size = kDiameter + 2 * ring_.glowMargin();
    ring_.setSize({size, size});
    paint(100);
    const QColor beside = at(0.25, kStroke / 2 + 2);
    EXPECT_GT(beside.alpha(), 10) << radius;
    EXPECT_LT(beside.alpha(), 80) << radius;
    EXPECT_GT(beside.green(), beside.red()) << radius;
    for (int place = 0; place < image_.width(); ++place) {
      ASSERT_LE(image_.pixelColor(place, 0).alpha(), 1) << place;
      ASSERT_LE(image_.pixelColor(0, place).alpha(), 1) << place;
      ASSERT_LE(image_.pixelColor(place, image_.height() - 1).alpha(), 1) << place;
      ASSERT_LE(image_.pixelColor(image_.width() - 1, place).alpha(), 1) << place;
    }
  }
}

TEST_F(ScoreRingTest, glow_fadesAsABlurDoes) {
  paint(100);
  for (const double distance : {9.0, 12.0, 15.0, 18.0}) {
    const double expected = 0.35 * glowOpacity(kStroke, 12, distance) * 255;
    EXPECT_NEAR(at(0.25, distance).alpha(), expected, 6) << distance;
  }
}

TEST_F(ScoreRingTest, noShadow_hasNoGlow) {
  ring_.setProperty("shadowRadius", 0.0);
  EXPECT_EQ(ring_.glowMargin(), 0);
  paint(60);
  EXPECT_EQ(at(0.25, kStroke / 2 + 2).alpha(), 0);
}

TEST_F(ScoreRingTest, noSize_drawsNothing) {
  ring_.setSize({4, 4});
  paint(60);
  EXPECT_EQ(image_.pixelColor(2, 2).alpha(), 0);
}

TEST_F(ScoreRingTest, number_changesOnlyWithItsText) {
  int changes = 0;
  QObject::connect(&ring_, &ScoreRing::numberChanged, [&] { ++changes; });
  ring_.setProgress(41.6);
  EXPECT_EQ(ring_.number(), "42");
  ring_.setProgress(41.9);
  ring_.setProgress(42.2);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(ScoreRing::spoken(QStringLiteral("Upload Trust"), 92), "Upload Trust 92");
}

TEST(RingColours, tone_choosesThem) {
  const SignalColours colours{kGreen, kYellow, kOrange, kRed};
  const RingColours safe = ringColours(Tone::Good, colours);
  EXPECT_NEAR(safe.start.alphaF(), 0.65, 0.01);
  EXPECT_EQ(safe.start.rgb(), kGreen.rgb());
  EXPECT_EQ(safe.end, kGreen);
  EXPECT_EQ(safe.glow, kGreen);
  const RingColours warning = ringColours(Tone::Caution, colours);
  EXPECT_NEAR(warning.start.alphaF(), 0.65, 0.01);
  EXPECT_EQ(warning.start.rgb(), kYellow.rgb());
  EXPECT_EQ(warning.end, kOrange);
  EXPECT_EQ(warning.glow, kYellow);
  const RingColours danger = ringColours(Tone::Critical, colours);
  EXPECT_EQ(danger.start, kOrange);
  EXPECT_EQ(danger.end, kRed);
  EXPECT_EQ(danger.glow, kRed);
  EXPECT_EQ(ringColours(Tone::Neutral, colours).end, kRed);
}

}  // namespace
}  // namespace cirrovane::test
