#include "tests/ui_items/Application.h"
#include "ui/items/ScoreTimeline.h"

#include <cmath>
#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

/// 2026-11-15 18:25 UTC
const Time kStart{std::chrono::seconds(1794767100)};

ScanSnapshot snapshotAt(std::int64_t seconds, std::int64_t score) {
  ScanSnapshot snapshot;
  snapshot.timestamp = kStart + std::chrono::seconds(seconds);
  snapshot.score = score;
  return snapshot;
}

std::vector<int> scoresOf(const std::vector<ScoreAtTime>& scores) {
  std::vector<int> numbers;
  for (const ScoreAtTime& score : scores) {
    numbers.push_back(score.score);
  }
  return numbers;
}

TEST(OrderedScores, newestFirst_comesOldestFirst) {
  const std::vector<ScanSnapshot> snapshots = {snapshotAt(30, 3), snapshotAt(20, 2), snapshotAt(10, 1)};
  EXPECT_THAT(scoresOf(orderedScores(snapshots)), ElementsAre(1, 2, 3));
}

TEST(OrderedScores, sameTime_keepsItsOrder) {
  const std::vector<ScanSnapshot> snapshots = {snapshotAt(20, 7), snapshotAt(10, 1), snapshotAt(20, 8),
                                               snapshotAt(20, 9)};
  EXPECT_THAT(scoresOf(orderedScores(snapshots)), ElementsAre(1, 7, 8, 9));
}

TEST(OrderedScores, beyondTheScale_isTheNearerEnd) {
  const std::vector<ScanSnapshot> snapshots = {snapshotAt(1, -5), snapshotAt(2, INT64_MAX), snapshotAt(3, INT64_MIN)};
  EXPECT_THAT(scoresOf(orderedScores(snapshots)), ElementsAre(0, 100, 0));
}

TEST(PlottedPoints, time_goesAlongAndScoreUp) {
  const auto scores = orderedScores(std::vector{snapshotAt(0, 0), snapshotAt(30, 50), snapshotAt(60, 100)});
  EXPECT_THAT(plottedPoints(scores, QRectF(10, 20, 300, 100)),
              ElementsAre(QPointF(10, 120), QPointF(160, 70), QPointF(310, 20)));
}

TEST(PlottedPoints, noSpan_standsInTheMiddle) {
  const QRectF area(10, 20, 300, 100);
  EXPECT_THAT(plottedPoints({}, area), ElementsAre());
  EXPECT_THAT(plottedPoints(orderedScores(std::vector{snapshotAt(0, 25)}), area), ElementsAre(QPointF(160, 95)));
  EXPECT_THAT(plottedPoints(orderedScores(std::vector{snapshotAt(5, 25), snapshotAt(5, 75)}), area),
              ElementsAre(QPointF(160, 95), QPointF(160, 45)));
}

TEST(ScoreMarks, height_decidesHowMany) {
  EXPECT_THAT(scoreMarks(114, 13), ElementsAre(0, 25, 50, 75, 100));
  EXPECT_THAT(scoreMarks(60, 13), ElementsAre(0, 50, 100));
  EXPECT_THAT(scoreMarks(20, 13), ElementsAre(0, 100));
}

TEST(TimelineDescription, range_latestAndNumber) {
  const TimeWording wording{QLocale(QLocale::English, QLocale::UnitedStates), QTimeZone(0), {}};
  EXPECT_EQ(timelineDescription({}, wording), "No scans yet");
  EXPECT_EQ(timelineDescription(orderedScores(std::vector{snapshotAt(0, 92)}), wording),
            "1 scan, Nov 15, 6:25 PM, score 92");
  EXPECT_EQ(timelineDescription(orderedScores(std::vector{snapshotAt(86400, 40), snapshotAt(0, 92)}), wording),
            "2 scans from Nov 15, 6:25 PM to Nov 16, 6:25 PM, latest score 40");
}

class ScoreTimelineTest : public ApplicationTest {
 protected:
  ScoreTimelineTest() {
    timeline_.setSize({380, 140});
    QObject::connect(&timeline_, &ScoreTimeline::drawingChanged, [this] { ++drawings_; });
  }

  void show(const std::vector<ScanSnapshot>& snapshots) { timeline_.setSnapshots(ScoreHistory(snapshots)); }

  std::vector<TimelineLabel> labels() const {
    std::vector<TimelineLabel> labels;
    for (const QVariant& label : timeline_.labels()) {
      labels.push_back(label.value<TimelineLabel>());
    }
    return labels;
  }

  /// How many lines a path consists of.
  static int lines(const QPainterPath& path) {
    int count = 0;
    for (int index = 0; index < path.elementCount(); ++index) {
      count += path.elementAt(index).isMoveTo() ? 1 : 0;
    }
    return count;
  }

  ScoreTimeline timeline_;
  int drawings_ = 0;
};

TEST_F(ScoreTimelineTest, empty_hasAxesOnly) {
  timeline_.setLabelSize(12);
  std::vector<std::string> texts;
  for (const TimelineLabel& label : labels()) {
    texts.push_back(label.text.toStdString());
    EXPECT_GE(label.position.x(), 0);
    EXPECT_LT(label.position.x(), timeline_.plot().left());
  }
  EXPECT_THAT(texts, ElementsAre("0", "25", "50", "75", "100"));
  EXPECT_EQ(lines(timeline_.gridPath()), 5);
  EXPECT_TRUE(timeline_.linePath().isEmpty());
  EXPECT_TRUE(timeline_.areaPath().isEmpty());
  EXPECT_TRUE(timeline_.pointsPath().isEmpty());
}

TEST_F(ScoreTimelineTest, single_isAPointWithoutLine) {
  show({snapshotAt(0, 50)});
  EXPECT_TRUE(timeline_.linePath().isEmpty());
  EXPECT_TRUE(timeline_.areaPath().isEmpty());
  EXPECT_EQ(lines(timeline_.pointsPath()), 1);
  EXPECT_EQ(labels().size(), 6U);
}

TEST_F(ScoreTimelineTest, many_areDrawnWithinTheItem) {
  std::vector<ScanSnapshot> snapshots;
  std::mt19937 random(7);
  for (int index = 0; index < 200; ++index) {
    snapshots.push_back(snapshotAt(-90 * index, static_cast<std::int64_t>(random() % 101)));
  }
  show(snapshots);
  EXPECT_EQ(lines(timeline_.pointsPath()), 200);
  EXPECT_EQ(timeline_.linePath().elementCount(), 1 + 3 * 199);
  EXPECT_EQ(timeline_.areaPath().elementCount(), timeline_.linePath().elementCount() + 3);
  EXPECT_TRUE(timeline_.boundingRect().contains(timeline_.plot()));
  for (const TimelineLabel& label : labels()) {
    EXPECT_TRUE(timeline_.boundingRect().contains(label.position)) << label.text.toStdString();
  }
}

TEST_F(ScoreTimelineTest, sameAgain_isNotDrawnAnew) {
  show({snapshotAt(0, 50), snapshotAt(60, 70)});
  EXPECT_EQ(drawings_, 1);
  show({snapshotAt(60, 70), snapshotAt(0, 50)});
  timeline_.setSize({380, 140});
  timeline_.setPosition({10, 10});
  EXPECT_EQ(drawings_, 1);
  timeline_.setSize({500, 140});
  EXPECT_EQ(drawings_, 2);
}

TEST_F(ScoreTimelineTest, sameLabels_areNotToldAnew) {
  show({snapshotAt(0, 50), snapshotAt(60, 70)});
  int told = 0;
  QObject::connect(&timeline_, &ScoreTimeline::labelsChanged, [&] { ++told; });
  show({snapshotAt(0, 80), snapshotAt(60, 10)});
  EXPECT_EQ(told, 0);
  show({snapshotAt(0, 80), snapshotAt(86400, 10)});
  EXPECT_EQ(told, 1);
}

TEST_F(ScoreTimelineTest, markBeyondTheScans_isNone) {
  show({snapshotAt(10, 50)});
  timeline_.setMarked(0);
  EXPECT_EQ(timeline_.marked(), 0);
  timeline_.setMarked(1);
  EXPECT_EQ(timeline_.marked(), -1);
  timeline_.setMarked(-2);
  EXPECT_EQ(timeline_.marked(), -1);
}

TEST_F(ScoreTimelineTest, mark_staysWithItsScan) {
  show({snapshotAt(30, 70), snapshotAt(20, 60), snapshotAt(10, 50)});
  timeline_.setMarked(1);
  show({snapshotAt(40, 80), snapshotAt(30, 70), snapshotAt(20, 60)});
  EXPECT_EQ(timeline_.marked(), 0);
  show({snapshotAt(40, 80), snapshotAt(30, 70)});
  EXPECT_EQ(timeline_.marked(), -1);
}

TEST_F(ScoreTimelineTest, nearestScan_isFoundByTheWayAlong) {
  EXPECT_EQ(timeline_.nearest(10), -1);
  show({snapshotAt(30, 70), snapshotAt(20, 60), snapshotAt(10, 50)});
  EXPECT_EQ(timeline_.count(), 3);
  EXPECT_EQ(timeline_.nearest(-50), 0);
  EXPECT_EQ(timeline_.nearest(200), 1);
  EXPECT_EQ(timeline_.nearest(1000), 2);
  timeline_.setMarked(2);
  EXPECT_GT(timeline_.markedPoint().x(), 300);
}

TEST_F(ScoreTimelineTest, noSize_isNoTrouble) {
  timeline_.setSize({0, 0});
  show({snapshotAt(0, 50), snapshotAt(60, 70)});
  EXPECT_EQ(timeline_.plot().width(), 0);
  EXPECT_EQ(timeline_.plot().height(), 0);
  EXPECT_TRUE(std::isfinite(timeline_.linePath().boundingRect().width()));
  EXPECT_TRUE(std::isfinite(timeline_.linePath().boundingRect().height()));
}

}  // namespace
}  // namespace cirrovane::test
