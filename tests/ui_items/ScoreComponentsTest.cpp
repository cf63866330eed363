#include "tests/ui_items/Application.h"
#include "tests/ui_items/ManualFrames.h"
#include "ui/items/ScoreTimeline.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

class ScoreComponentsTest : public ApplicationTest {
 protected:
  void load(const QByteArray& body) {
    engine_.addImportPath(QStringLiteral("qrc:/"));
    QQmlComponent component(&engine_);
    component.setData("import QtQuick\nimport Cirrovane\n" + body, {});
    object_.reset(component.create());
    ASSERT_NE(object_, nullptr) << component.errorString().toStdString();
  }

  QString accessible(QAccessible::Text text) const {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(object_.get());
    return interface != nullptr ? interface->text(text) : QStringLiteral("nothing");
  }

  /// The text of the big number.
  QString number() const {
    for (QQuickItem* item : qobject_cast<QQuickItem*>(object_.get())->childItems()) {
      if (item->property("number").isValid()) {
        return item->property("number").toString();
      }
    }
    return QStringLiteral("nothing");
  }

  ManualFrames frames_;
  QQmlEngine engine_;
  std::unique_ptr<QObject> object_;
};

TEST_F(ScoreComponentsTest, dial_beginsAtItsScore) {
  load("ScoreDialView { score: 92; tone: Tone.Good }");
  EXPECT_EQ(number(), "92");
  EXPECT_EQ(accessible(QAccessible::Name), "Upload Trust 92");
}

TEST_F(ScoreComponentsTest, dialWithANewScore_saysItAtOnceAndMovesThere) {
  load("ScoreDialView { score: 90; tone: Tone.Good; caption: 'Local Availability' }");
  object_->setProperty("score", 10);
  EXPECT_EQ(accessible(QAccessible::Name), "Local Availability 10");
  EXPECT_EQ(number(), "90");
  frames_.pass(0);
  frames_.pass(150);
  EXPECT_NE(number(), "90");
  EXPECT_NE(number(), "10");
  frames_.pass(5000);
  EXPECT_EQ(number(), "10");
}

TEST_F(ScoreComponentsTest, dialWithMotionOff_jumps) {
  load("ScoreDialView { score: 90; tone: Tone.Good; motionEnabled: false }");
  object_->setProperty("score", 10);
  EXPECT_EQ(number(), "10");
}

TEST_F(ScoreComponentsTest, dial_isAsLargeAsItIsToldTo) {
  load("ScoreDialView { score: 1; tone: Tone.Critical; dialSize: 120; strokeWidth: 10; shadowRadius: 9 }");
  const auto* dial = qobject_cast<QQuickItem*>(object_.get());
  EXPECT_EQ(dial->implicitWidth(), 120);
  EXPECT_EQ(dial->implicitHeight(), 120);
}

TEST_F(ScoreComponentsTest, chart_isAGroupThatSaysWhatItShows) {
  load("ScoreTimelineChartView { width: 380 }");
  const auto* chart = qobject_cast<QQuickItem*>(object_.get());
  EXPECT_EQ(chart->height(), 140);
  EXPECT_EQ(accessible(QAccessible::Name), "Score timeline");
  EXPECT_EQ(accessible(QAccessible::Description), "No scans yet");

  ScanSnapshot snapshot;
  snapshot.score = 64;
  object_->setProperty("snapshots", QVariant::fromValue(ScoreHistory(std::vector{snapshot})));
  EXPECT_TRUE(accessible(QAccessible::Description).startsWith(QStringLiteral("1 scan, ")));
  EXPECT_TRUE(accessible(QAccessible::Description).endsWith(QStringLiteral(", score 64")));
}

}  // namespace
}  // namespace cirrovane::test
