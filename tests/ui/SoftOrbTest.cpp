#include "ui/items/SoftOrb.h"

#include <cmath>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

/// The same by adding up small squares of the disc.
double naiveOpacity(double radius, double blur, double distance) {
  constexpr double kStep = 2;
  double sum = 0;
  for (double x = -radius; x <= radius; x += kStep) {
    for (double y = -radius; y <= radius; y += kStep) {
      if (x * x + y * y <= radius * radius) {
        const double away = (x - distance) * (x - distance) + y * y;
        sum += std::exp(-away / (2 * blur * blur)) * kStep * kStep;
      }
    }
  }
  return sum / (2 * M_PI * blur * blur);
}

TEST(SoftOrb, opacity_isWhatABlurLeaves) {
  for (const double distance : {0.0, 60.0, 150.0, 210.0, 280.0, 400.0}) {
    EXPECT_NEAR(blurredDiscOpacity(210, 80, distance), naiveOpacity(210, 80, distance), 0.01) << distance;
    EXPECT_NEAR(blurredDiscOpacity(190, 95, distance), naiveOpacity(190, 95, distance), 0.01) << distance;
  }
}

TEST(SoftOrb, opacity_fallsFromTheCentreOut) {
  double last = 1.01;
  for (double distance = 0; distance < 500; distance += 10) {
    const double opacity = blurredDiscOpacity(210, 80, distance);
    EXPECT_LT(opacity, last);
    EXPECT_GE(opacity, 0);
    last = opacity;
  }
  EXPECT_LT(last, 0.01);
}

TEST(SoftOrb, opacity_withoutABlur_isTheDiscs) {
  EXPECT_EQ(blurredDiscOpacity(10, 0, 9.9), 1);
  EXPECT_EQ(blurredDiscOpacity(10, 0, 10.1), 0);
}

}  // namespace
}  // namespace cirrovane::test
