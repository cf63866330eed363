// What osx-cpu-temp printed: the words of a program that the user installed, in a form that is nobody's promise.

#include "diagnostics/StatusParsers.h"
#include "fuzz/NaiveText.h"
#include "fuzz/Require.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {
namespace {

struct Reading {
  std::string number;
  bool isNegative = false;
  bool isInDegrees = false;
};

/// A "C" by itself, and not the beginning of a word.
bool isUnit(std::string_view rest) {
  if (!rest.starts_with("C")) {
    return false;
  }
  const std::string next(rest.substr(1, 1));
  return next.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789") == std::string::npos;
}

std::vector<Reading> naiveReadings(std::string_view text) {
  std::vector<Reading> readings;
  char before = '\0';
  while (!text.empty()) {
    const std::string number = naiveNumber(text, ".,");
    if (number.empty()) {
      before = text.front();
      text.remove_prefix(1);
      continue;
    }
    text.remove_prefix(number.size());
    std::string_view rest = text;
    while (rest.starts_with(' ') || rest.starts_with('\t')) {
      rest.remove_prefix(1);
    }
    readings.push_back({number, before == '-', rest.starts_with("\xC2\xB0") || isUnit(rest)});
    before = number.back();
  }
  return readings;
}

std::optional<Reading> naiveReading(std::string_view text) {
  const std::vector<Reading> readings = naiveReadings(text);
  for (const Reading& reading : readings) {
    if (reading.isInDegrees) {
      return reading;
    }
  }
  return readings.empty() ? std::nullopt : std::optional(readings.front());
}

void check(std::string_view bytes) {
  const std::optional<double> degrees = temperatureFromSensor(bytes);
  require(!degrees || std::isfinite(*degrees), "a temperature is a number");
  const std::optional<Reading> reading = naiveReading(bytes);
  std::optional<double> expected = reading ? naiveValue(reading->number) : std::nullopt;
  if (expected && reading->isNegative) {
    expected = -*expected;
  }
  require(areAlike(degrees, expected), "every other way to read it finds the same");

  const std::string text(bytes);
  require(temperatureFromSensor("CPU: " + text) == degrees, "words before mean nothing");
  require(temperatureFromSensor(replaced(text, ',', ".")) == degrees, "a comma is as good as a point");
  require(temperatureFromSensor(replaced(text, '\t', "  ")) == degrees, "every blank is as good as another");
  const bool isInDegrees = reading && reading->isInDegrees;
  require(temperatureFromSensor(text + "\n-61.5\xC2\xB0") == (isInDegrees ? degrees : -61.5),
          "the first number of degrees counts before all others");
  require(temperatureFromSensor(text + "\n-61,5") == (reading ? degrees : -61.5),
          "what follows a number means nothing unless it is in degrees");
  require(temperatureFromSensor("-0.5 C " + text) == -0.5, "what follows degrees means nothing");
}

}  // namespace
}  // namespace cirrovane

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  cirrovane::check({reinterpret_cast<const char*>(data), size});
  return 0;
}
