#include "tests/ui_items/Application.h"
#include "ui/items/SoftOrb.h"

#include <QColor>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

// For text, and for large text and symbols.
constexpr double kTextContrast = 4.5;
constexpr double kLargeContrast = 3.0;

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

/// The upper colour on the opaque lower one, with the upper one's opacity times a factor.
QColor on(const QColor& lower, const QColor& upper, double factor = 1) {
  const double share = upper.alphaF() * factor;
  const auto mixed = [share](double below, double above) { return below * (1 - share) + above * share; };
  return QColor::fromRgbF(static_cast<float>(mixed(lower.redF(), upper.redF())),
                          static_cast<float>(mixed(lower.greenF(), upper.greenF())),
                          static_cast<float>(mixed(lower.blueF(), upper.blueF())));
}

/// The same with an opacity of its own.
QColor withOpacity(QColor colour, float opacity) {
  colour.setAlphaF(opacity);
  return colour;
}

class ContrastTest : public ApplicationTest, public testing::WithParamInterface<bool> {
 protected:
  ContrastTest() {
    engine_.addImportPath(QStringLiteral("qrc:/"));
    theme_ = make("QtObject { property QtObject theme: Theme }");
    colours_ = theme_->property("theme").value<QObject*>();
    colours_->setProperty("isClassic", GetParam());
    ground_ = GetParam() ? colour("classicTop") : lightestLiquid();
    card_ = on(ground_, colour("cardFill"));
  }
  void TearDown() override { colours_->setProperty("isClassic", false); }

  std::unique_ptr<QObject> make(const QByteArray& body) {
    QQmlComponent component(&engine_);
    component.setData("import QtQuick\nimport Cirrovane\n" + body, {});
    std::unique_ptr<QObject> object(component.create());
    EXPECT_NE(object, nullptr) << component.errorString().toStdString();
    return object;
  }

  QColor colour(const char* name) const {
    const QVariant value = colours_->property(name);
    EXPECT_TRUE(value.isValid()) << name;
    return value.value<QColor>();
  }

  /// Wherever the two lights are on their ways, and whatever lies below them.
  QColor lightestLiquid() {
    const auto backdrop = make("AppBackdropView { width: 860; height: 640; isClassic: false; motionEnabled: false }");
    const QList<SoftOrb*> orbs = backdrop->findChildren<SoftOrb*>();
    EXPECT_EQ(orbs.size(), 2);
    // The gradient's lighter end everywhere: it is close to what is below the upper light.
    QColor lightest = colour("liquidTop");
    for (int phases = 0; phases < 81; ++phases) {
      const int first = phases / 9;
      const int second = phases % 9;
      backdrop->setProperty("orbOnePhase", first / 8.0);
      backdrop->setProperty("orbTwoPhase", second / 8.0);
      for (int x = 0; x <= 860; x += 20) {
        for (int y = 0; y <= 640; y += 20) {
          QColor here = colour("liquidTop");
          for (const SoftOrb* orb : orbs) {
            const double distance = std::hypot(x - orb->x(), y - orb->y());
            here = on(here, orb->property("color").value<QColor>(),
                      blurredDiscOpacity(orb->property("diameter").toDouble() / 2,
                                         orb->property("blurRadius").toDouble(), distance));
          }
          lightest = luminance(here) > luminance(lightest) ? here : lightest;
        }
      }
    }
    return lightest;
  }

  void expectContrast(const char* foreground, const QColor& ground, double least, const std::string& where) const {
    const QColor text = colour(foreground);
    EXPECT_GE(contrast(on(ground, text), ground), least)
        << foreground << " on " << where << ' ' << ground.name().toStdString();
  }

  QQmlEngine engine_;
  std::unique_ptr<QObject> theme_;
  QObject* colours_ = nullptr;
  /// The backdrop and a card, where they are lightest.
  QColor ground_;
  QColor card_;
};

TEST_P(ContrastTest, texts_onTheLightestGround_areReadable) {
  expectContrast("text", ground_, kTextContrast, "the backdrop");
  expectContrast("subtitleText", ground_, kTextContrast, "the backdrop");
  for (const char* text : {"text", "subtitleText", "secondaryText", "dimmedText", "orange"}) {
    expectContrast(text, card_, kTextContrast, "a card");
  }
  const QColor pill = on(card_, colour("pillFill"));
  expectContrast("dimmedText", pill, kTextContrast, "a pill");
  for (const char* fill : {"controlFill", "controlHover", "controlPressed", "selectedFill"}) {
    expectContrast("text", on(card_, colour(fill)), kTextContrast, std::string("a control in a card, ") + fill);
  }
  for (const char* text : {"text", "secondaryText", "dimmedText"}) {
    expectContrast(text, colour("popupFill"), kTextContrast, "a sheet");
  }
}

TEST_P(ContrastTest, signals_onTheLightestGround_canBeTold) {
  const QColor pill = on(card_, colour("pillFill"));
  for (const char* signal : {"green", "yellow", "orange", "red", "cyan"}) {
    expectContrast(signal, card_, kLargeContrast, "a card");
    expectContrast(signal, pill, kLargeContrast, "a pill");
  }
}

TEST_P(ContrastTest, badges_haveReadableWords) {
  for (const char* signal : {"green", "yellow", "orange", "red", "cyan"}) {
    const QColor badge = on(card_, withOpacity(colour(signal), 0.22F));
    expectContrast("text", badge, kTextContrast, std::string("a badge in ") + signal);
  }
}

TEST_P(ContrastTest, focusRing_canBeSeen) {
  expectContrast("focusRing", ground_, kLargeContrast, "the backdrop");
  expectContrast("focusRing", card_, kLargeContrast, "a card");
}

std::string styleName(const testing::TestParamInfo<bool>& style) {
  return style.param ? "classic" : "liquid";
}

INSTANTIATE_TEST_SUITE_P(Styles, ContrastTest, testing::Bool(), styleName);

}  // namespace
}  // namespace cirrovane::test
