#include "diagnostics/StatusParsers.h"

#include <array>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <locale>
#include <optional>
#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::DoubleEq;
using testing::Optional;

constexpr std::size_t kHuge = std::size_t{10} * 1024 * 1024;
constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();

constexpr std::string_view kTop =
    "Processes: 598 total, 6 running, 592 sleeping, 2847 threads \n"
    "2026/05/25 10:00:15\n"
    "Load Avg: 3.10, 3.23, 3.11 \n"
    "CPU usage: 20.86% user, 12.94% sys, 66.18% idle \n"
    "SharedLibs: 869M resident, 130M data, 202M linkedit.\n"
    "MemRegions: 161430 total, 11G resident, 417M private, 7786M shared.\n"
    "PhysMem: 31G used (8595M wired, 3102M compressor), 344M unused.\n"
    "\n"
    "PID  COMMAND\n";

constexpr std::string_view kVMStat =
    "Mach Virtual Memory Statistics: (page size of 16384 bytes)\n"
    "Pages free:                               12345.\n"
    "Pages active:                            400000.\n"
    "Pages inactive:                          399000.\n"
    "Pages speculative:                         1200.\n"
    "Pages throttled:                              0.\n"
    "Pages wired down:                        150000.\n"
    "Pages purgeable:                           3000.\n"
    "\"Translation faults\":                 987654321.\n"
    "Pages copy-on-write:                   12345678.\n"
    "Pages zero filled:                    123456789.\n"
    "Pages reactivated:                       500000.\n"
    "Pages purged:                            100000.\n"
    "File-backed pages:                       250000.\n"
    "Anonymous pages:                         549000.\n"
    "Pages stored in compressor:              200000.\n"
    "Pages occupied by compressor:             70000.\n"
    "Decompressions:                         1000000.\n";

/// As many whole parts as fit into a size.
std::string repeated(std::string_view part, std::size_t size) {
  std::string text(part);
  while (text.size() < size) {
    text += text;
  }
  text.resize(size - size % part.size());
  return text;
}

std::string withLineBreaks(std::string_view text, std::string_view lineBreak) {
  std::string changed;
  for (const char byte : text) {
    byte == '\n' ? changed.append(lineBreak) : changed.append(1, byte);
  }
  return changed;
}

const std::vector<std::string_view> kLineBreaks = {"\n",   "\v",       "\f",           "\r",
                                                   "\r\n", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};

std::string cpuLine(std::string_view user, std::string_view system) {
  return "CPU usage: " + std::string(user) + "% user, " + std::string(system) + "% sys, 82.15% idle";
}

std::string vmStat(std::string_view pageSize, std::string_view active) {
  return "Statistics: (page size of " + std::string(pageSize) + " bytes)\nPages active: " + std::string(active) + "\n";
}

TEST(FirstLineContaining, severalLines_givesTheFirstThatContainsThePart) {
  EXPECT_THAT(firstLineContaining("one\r\ntwo 1\r\ntwo 2", "two"), Optional("two 1"sv));
  EXPECT_THAT(firstLineContaining("one\n", "one"), Optional("one"sv));
  EXPECT_EQ(firstLineContaining("one\ntwo", "three"), std::nullopt);
  EXPECT_EQ(firstLineContaining("one\ntwo", "one\ntwo"), std::nullopt);
  EXPECT_EQ(firstLineContaining("one\ntwo", "Two"), std::nullopt);
  EXPECT_EQ(firstLineContaining("", "one"), std::nullopt);
  EXPECT_THAT(firstLineContaining("\n\none", ""), Optional("one"sv));
}

TEST(CPUUsageFromTop, sampleOutput_givesUserPlusSystem) {
  EXPECT_THAT(cpuUsageFromTop(kTop), Optional(DoubleEq(20.86 + 12.94)));
  EXPECT_THAT(cpuUsageFromTop("CPU usage: 7.31% user, 10.52% sys, 82.15% idle"), Optional(DoubleEq(17.83)));
  EXPECT_THAT(cpuUsageFromTop("CPU usage: 5% user, 3% sys, 92% idle"), Optional(8.0));
  EXPECT_THAT(cpuUsageFromTop("CPU usage: 0.0% user, 0.0% sys, 100.0% idle"), Optional(0.0));
}

TEST(CPUUsageFromTop, eachLineBreak_isUnderstood) {
  for (const std::string_view lineBreak : kLineBreaks) {
    EXPECT_THAT(cpuUsageFromTop(withLineBreaks(kTop, lineBreak)), Optional(DoubleEq(20.86 + 12.94)));
  }
}

TEST(CPUUsageFromTop, moreThanAHundred_isNotClamped) {
  EXPECT_THAT(cpuUsageFromTop(cpuLine("400", "300.5")), Optional(700.5));
}

TEST(CPUUsageFromTop, withoutItsLine_isAbsent) {
  EXPECT_EQ(cpuUsageFromTop(""), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop("5% user, 3% sys"), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop("cpu usage: 5% user, 3% sys"), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop("CPU\nusage: 5% user, 3% sys"), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop("CPU  usage: 5% user, 3% sys"), std::nullopt);
}

TEST(CPUUsageFromTop, labelAnywhereInTheLine_counts) {
  EXPECT_THAT(cpuUsageFromTop("5% user, 3% sys: CPU usage"), Optional(8.0));
  EXPECT_THAT(cpuUsageFromTop("CPU usage5% user,3% sys"), Optional(8.0));
}

TEST(CPUUsageFromTop, severalLines_onlyTheFirstCounts) {
  EXPECT_THAT(cpuUsageFromTop(cpuLine("1", "2") + "\n" + cpuLine("3", "4")), Optional(3.0));
  EXPECT_EQ(cpuUsageFromTop("CPU usage: none\n" + cpuLine("3", "4")), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop("CPU usage: 1% user,\n 2% sys"), std::nullopt);
}

TEST(CPUUsageFromTop, severalMatchesInALine_theLeftmostCounts) {
  EXPECT_THAT(cpuUsageFromTop(cpuLine("1", "2") + cpuLine("3", "4")), Optional(3.0));
  EXPECT_THAT(cpuUsageFromTop("CPU usage: 1% user, 2% user, 3% sys"), Optional(5.0));
  EXPECT_THAT(cpuUsageFromTop("CPU usage: % user, 2% user, 3% sys"), Optional(5.0));
  EXPECT_THAT(cpuUsageFromTop("CPU usage: 1% user, x% sys 3% user, 4% sys"), Optional(7.0));
}

TEST(CPUUsageFromTop, formsOfANumber_areDigitsAndPerhapsAFraction) {
  EXPECT_THAT(cpuUsageFromTop(cpuLine("007", "00.50")), Optional(7.5));
  EXPECT_THAT(cpuUsageFromTop(cpuLine("1.2.5", "3")), Optional(5.5)) << "2.5 is what stands before the sign";
  EXPECT_THAT(cpuUsageFromTop(cpuLine(".5", "3")), Optional(8.0));
  EXPECT_THAT(cpuUsageFromTop(cpuLine("-5", "3")), Optional(8.0));
  EXPECT_THAT(cpuUsageFromTop(cpuLine("1..5", "3")), Optional(8.0));
  EXPECT_THAT(cpuUsageFromTop(cpuLine("1,5", "3")), Optional(8.0));
  EXPECT_THAT(cpuUsageFromTop(cpuLine("1e5", "3")), Optional(8.0));
  for (const std::string_view bad : {"", ".", "5.", "x", "5 ", "\xD9\xA5", "\xEF\xBC\x95", "inf", "nan"}) {
    EXPECT_EQ(cpuUsageFromTop(cpuLine(bad, "3")), std::nullopt) << bad;
    EXPECT_EQ(cpuUsageFromTop(cpuLine("5", bad)), std::nullopt) << bad;
  }
  for (const std::string_view bad : {".5", "-5", "+5", "5..5", "5.5.5", "5,5", "5e5", "0x5"}) {
    EXPECT_EQ(cpuUsageFromTop(cpuLine("5", bad)), std::nullopt) << bad;
  }
}

TEST(CPUUsageFromTop, blanksBetweenTheNumbers_mayBeAnyOrNone) {
  for (const std::string_view gap : {""sv, " "sv, "\t \t"sv, "\xC2\xA0"sv, "\xE1\x9A\x80"sv, "\xE2\x80\x80"sv,
                                     "\xE2\x80\x8A"sv, "\xE2\x80\xAF"sv, "\xE2\x81\x9F"sv, "\xE3\x80\x80"sv}) {
    EXPECT_THAT(cpuUsageFromTop("CPU usage: 5% user," + std::string(gap) + "3% sys"), Optional(8.0))
        << testing::PrintToString(gap);
  }
  for (const std::string_view gap : {"x"sv, "\0"sv, "\xA0"sv, "\xC2"sv, "\xE2\x80\x8B"sv, "\xEF\xBB\xBF"sv, "_"sv}) {
    EXPECT_EQ(cpuUsageFromTop("CPU usage: 5% user," + std::string(gap) + "3% sys"), std::nullopt)
        << testing::PrintToString(gap);
  }
}

TEST(CPUUsageFromTop, otherBlanks_matchNothing) {
  for (const std::string_view text : {"5 % user, 3% sys", "5%  user, 3% sys", "5%user, 3% sys", "5% user , 3% sys",
                                      "5% user 3% sys", "5% user, 3 % sys", "5% user, 3%  sys", "5% user, 3%sys",
                                      "5% User, 3% sys", "5% user, 3% Sys", "5% user, 3% sy", "3% sys, 5% user"}) {
    EXPECT_EQ(cpuUsageFromTop("CPU usage: " + std::string(text)), std::nullopt) << text;
  }
  EXPECT_THAT(cpuUsageFromTop("CPU usage: 5% user, 3% system"), Optional(8.0));
}

TEST(CPUUsageFromTop, numbersBeyondAllNumbers_areAbsent) {
  const std::string digits(400, '9');
  EXPECT_EQ(cpuUsageFromTop(cpuLine(digits, "3")), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop(cpuLine("3", digits)), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop(cpuLine(digits, digits)), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop(cpuLine(digits + ".5", "3") + cpuLine("1", "2")), std::nullopt)
      << "a later match does not count";
  const std::string half = "17" + std::string(307, '0');
  EXPECT_THAT(cpuUsageFromTop(cpuLine(half, "3")), Optional(1.7e308));
  EXPECT_EQ(cpuUsageFromTop(cpuLine(half, half)), std::nullopt) << "their sum is beyond them";
}

TEST(CPUUsageFromTop, longNumbers_areReadLikeShortOnes) {
  EXPECT_THAT(cpuUsageFromTop(cpuLine(std::string(400, '0') + "5", "3")), Optional(8.0));
  EXPECT_THAT(cpuUsageFromTop(cpuLine("5." + std::string(400, '0'), "3")), Optional(8.0));
  EXPECT_THAT(cpuUsageFromTop(cpuLine("0." + std::string(400, '3'), "0")), Optional(DoubleEq(1.0 / 3)));
  EXPECT_THAT(cpuUsageFromTop(cpuLine("0." + std::string(400, '0') + "1", "3")), Optional(3.0));
  EXPECT_THAT(cpuUsageFromTop(cpuLine("3", "0." + std::string(400, '0') + "1")), Optional(3.0));
}

TEST(CPUUsageFromTop, bytesThatAreNoText_areSteppedOver) {
  const std::string junk = "\0\xFF\xC2\xF0\x9F\xED\xA0\x80"s;
  EXPECT_THAT(cpuUsageFromTop(junk + "\n" + junk + cpuLine("5", "3") + junk), Optional(8.0));
  EXPECT_THAT(cpuUsageFromTop(junk + "CPU usage" + junk + "5% user, 3% sys"), Optional(8.0));
  EXPECT_EQ(cpuUsageFromTop(junk), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop("CPU\0usage: 5% user, 3% sys"sv), std::nullopt);
}

TEST(CPUUsageFromTop, hugeTexts_areReadInTimeInProportion) {
  const std::string label = "CPU usage: ";
  EXPECT_EQ(cpuUsageFromTop(label + repeated("7", kHuge)), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop(label + repeated("7.", kHuge)), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop(label + repeated("7", kHuge) + "% user, 3% sys"), std::nullopt);
  EXPECT_THAT(cpuUsageFromTop(label + "0." + repeated("7", kHuge) + "% user, 3% sys"), Optional(DoubleEq(3 + 7.0 / 9)));
  EXPECT_THAT(cpuUsageFromTop(label + repeated("0", kHuge) + "% user, 3% sys"), Optional(3.0));
  EXPECT_THAT(cpuUsageFromTop(label + repeated("7.", kHuge) + "7% user, 3% sys"), Optional(10.7));
  EXPECT_EQ(cpuUsageFromTop(label + repeated("% user,", kHuge)), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop(label + repeated("7% user,", kHuge)), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop(label + repeated("7% user, 7% sy", kHuge)), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop(label + "7% user," + repeated(" ", kHuge)), std::nullopt);
  EXPECT_THAT(cpuUsageFromTop(label + "7% user," + repeated(" ", kHuge) + "3% sys"), Optional(10.0));
  EXPECT_EQ(cpuUsageFromTop(label + repeated("% user, ", kHuge) + repeated(" ", kHuge)), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop(repeated("CPU usag", kHuge)), std::nullopt);
  EXPECT_EQ(cpuUsageFromTop(repeated("\n", kHuge)), std::nullopt);
  EXPECT_THAT(cpuUsageFromTop(repeated("x\n", kHuge) + cpuLine("5", "3")), Optional(8.0));
}

/// Text that is often a reading, often nearly one, and seldom long.
std::string generatedText(std::mt19937& random) {
  constexpr auto kParts = std::to_array<std::string_view>(
      {"% user,", "% user,", "% sys", "% sys", "CPU usage", "0", "5", "17", "9",  ".",        ".",        " ",
       "\t",      "%",       "user,", " user", "sys",       ",", "x", "-",  "\n", "% user, ", "1% user,", "2% sys"});
  std::string text = random() % 8 == 0 ? "" : "CPU usage: ";
  for (auto count = random() % 14; count > 0; --count) {
    text += kParts.at(random() % kParts.size());
  }
  return text;
}

std::optional<double> usageByRegularExpression(const std::string& text) {
  static const std::regex kPattern(R"(([0-9]+(?:\.[0-9]+)?)% user,[ \t]*([0-9]+(?:\.[0-9]+)?)% sys)");
  const std::size_t label = text.find("CPU usage");
  if (label == std::string::npos) {
    return std::nullopt;
  }
  const std::size_t start = text.rfind('\n', label) + 1;  // from 0 where there is none before it
  const std::string line = text.substr(start, text.find('\n', label) - start);
  std::smatch match;
  if (!std::regex_search(line, match, kPattern)) {
    return std::nullopt;
  }
  return std::strtod(match.str(1).c_str(), nullptr) + std::strtod(match.str(2).c_str(), nullptr);
}

TEST(CPUUsageFromTop, generatedLines_areReadAsARegularExpressionDoes) {
  std::mt19937 random(20260525);
  int matches = 0;
  for (int round = 0; round < 40'000; ++round) {
    const std::string text = generatedText(random);
    const std::optional<double> expected = usageByRegularExpression(text);
    matches += expected ? 1 : 0;
    ASSERT_EQ(cpuUsageFromTop(text), expected) << testing::PrintToString(text);
  }
  EXPECT_GT(matches, 400) << "the lines must not all be of one kind";
}

TEST(MemoryUsedFromVMStat, sampleOutput_givesActiveWiredAndCompressed) {
  EXPECT_THAT(memoryUsedFromVMStat(kVMStat), Optional(std::uint64_t{400000 + 150000 + 70000} * 16384));
}

TEST(MemoryUsedFromVMStat, eachLineBreak_isUnderstood) {
  for (const std::string_view lineBreak : kLineBreaks) {
    EXPECT_EQ(memoryUsedFromVMStat(withLineBreaks(kVMStat, lineBreak)), memoryUsedFromVMStat(kVMStat));
  }
}

TEST(MemoryUsedFromVMStat, otherOrderOfLines_changesNothing) {
  EXPECT_THAT(memoryUsedFromVMStat("page size of 10 bytes\n"
                                   "Pages occupied by compressor: 3.\n"
                                   "Pages wired down: 20.\n"
                                   "Pages active: 100.\n"),
              Optional(1230U));
}

TEST(MemoryUsedFromVMStat, pageSize_isTheFirstNumberOfTheFirstLine) {
  EXPECT_THAT(memoryUsedFromVMStat("4096\nPages active: 2."), Optional(8192U));
  EXPECT_THAT(memoryUsedFromVMStat("\n\r\npage size of 4096 bytes, 8 wide\nPages active: 2."), Optional(8192U));
  EXPECT_THAT(memoryUsedFromVMStat("x4096y\nPages active: 2."), Optional(8192U));
  EXPECT_THAT(memoryUsedFromVMStat("page size of 4.096 bytes\nPages active: 2."), Optional(8U));
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("0", "7.")), Optional(0U));
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("018446744073709551615", "1.")), Optional(kMost));
}

TEST(MemoryUsedFromVMStat, pageSizeThatCannotBeRead_isAbsent) {
  EXPECT_EQ(memoryUsedFromVMStat(""), std::nullopt);
  EXPECT_EQ(memoryUsedFromVMStat("\r\n\n"), std::nullopt);
  EXPECT_EQ(memoryUsedFromVMStat("Statistics:\n(page size of 4096 bytes)\nPages active: 2."), std::nullopt);
  EXPECT_EQ(memoryUsedFromVMStat(vmStat("many", "2.")), std::nullopt);
  EXPECT_EQ(memoryUsedFromVMStat(vmStat("\xD9\xA4", "2.")), std::nullopt);
  EXPECT_EQ(memoryUsedFromVMStat(vmStat("18446744073709551616", "0.")), std::nullopt);
  EXPECT_EQ(memoryUsedFromVMStat(vmStat(std::string(400, '9'), "0.")), std::nullopt);
}

TEST(MemoryUsedFromVMStat, missingLine_countsAsNothing) {
  EXPECT_THAT(memoryUsedFromVMStat("page size of 10 bytes\n"), Optional(0U));
  EXPECT_THAT(memoryUsedFromVMStat("page size of 10 bytes\nPages wired down: 20.\n"), Optional(200U));
  EXPECT_THAT(memoryUsedFromVMStat(
                  "page size of 10 bytes\nPages inactive: 5.\nPages wired: 6.\nPages stored in compressor: 7.\n"),
              Optional(0U));
}

TEST(MemoryUsedFromVMStat, count_isTheLastPieceOfTheLineWithoutFullStops) {
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("1", "1.234")), Optional(1234U));
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("1", "1.234.567.")), Optional(1234567U));
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("1", "12 .")), Optional(12U));
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("1", "5. 12.\t ")), Optional(12U));
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("1", "007")), Optional(7U));
  EXPECT_THAT(memoryUsedFromVMStat("1\nPages active:\xE3\x80\x80"
                                   "12."),
              Optional(12U));
  EXPECT_THAT(memoryUsedFromVMStat("1\nPages active 12"), Optional(12U));
}

TEST(MemoryUsedFromVMStat, countThatCannotBeRead_countsAsNothing) {
  for (const std::string_view bad :
       {"", ".", "-5.", "5,5.", "5x", "x5", "0x5", "5 pages", "\xD9\xA5", "18446744073709551616."}) {
    EXPECT_THAT(memoryUsedFromVMStat(vmStat("10", bad) + "Pages wired down: 3."), Optional(30U)) << bad;
  }
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("10", std::string(400, '9')) + "Pages wired down: 3."), Optional(30U));
  EXPECT_THAT(memoryUsedFromVMStat("10\nPages active:12."), Optional(0U)) << "label and number are one piece";
}

TEST(MemoryUsedFromVMStat, repeatedLabel_onlyTheFirstLineCounts) {
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("1", "5.") + "Pages active: 7."), Optional(5U));
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("1", "none") + "Pages active: 7."), Optional(0U));
  EXPECT_THAT(memoryUsedFromVMStat("Pages active of 3 bytes: 5\nPages active: 7."), Optional(15U))
      << "the first line is searched too";
}

TEST(MemoryUsedFromVMStat, overflow_isAbsent) {
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("1", "18446744073709551615.")), Optional(kMost));
  EXPECT_EQ(memoryUsedFromVMStat(vmStat("2", "18446744073709551615.")), std::nullopt);
  EXPECT_EQ(memoryUsedFromVMStat(vmStat("1", "18446744073709551615.") + "Pages wired down: 1."), std::nullopt);
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("5", "3689348814741910323.")), Optional(kMost));
  EXPECT_EQ(memoryUsedFromVMStat(vmStat("5", "3689348814741910324.")), std::nullopt);
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("4294967296", "4294967295.")), Optional(kMost - 4294967295U));
  EXPECT_EQ(memoryUsedFromVMStat(vmStat("4294967296", "4294967295.") + "Pages occupied by compressor: 1."),
            std::nullopt);
}

TEST(MemoryUsedFromVMStat, bytesThatAreNoText_areSteppedOver) {
  const std::string junk = "\0\xFF\xC2\xF0\x9F\xED\xA0\x80"s;
  EXPECT_THAT(memoryUsedFromVMStat(junk + "10" + junk + "\n" + junk + "\n" + junk + "Pages active: 3." + "\n" + junk),
              Optional(30U));
  EXPECT_THAT(memoryUsedFromVMStat("10\nPages active: 3" + junk), Optional(0U));
  EXPECT_EQ(memoryUsedFromVMStat(junk), std::nullopt);
}

TEST(MemoryUsedFromVMStat, hugeTexts_areReadInTimeInProportion) {
  EXPECT_EQ(memoryUsedFromVMStat(repeated("7", kHuge)), std::nullopt);
  EXPECT_EQ(memoryUsedFromVMStat(repeated("\n", kHuge)), std::nullopt);
  EXPECT_EQ(memoryUsedFromVMStat(repeated(" ", kHuge)), std::nullopt);
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("10", repeated("7", kHuge))), Optional(0U));
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("10", repeated("0", kHuge) + "7")), Optional(70U));
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("10", repeated(".", kHuge) + "7")), Optional(70U));
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("10", repeated(" ", kHuge) + "7")), Optional(70U));
  EXPECT_THAT(memoryUsedFromVMStat(vmStat("10", repeated("7 ", kHuge))), Optional(70U));
  EXPECT_THAT(memoryUsedFromVMStat("10\n" + repeated("Pages activ", kHuge)), Optional(0U));
  EXPECT_THAT(memoryUsedFromVMStat("10\n" + repeated("Pages active\n", kHuge)), Optional(0U));
}

TEST(TemperatureFromSensor, sampleOutputs_giveTheirDegrees) {
  EXPECT_THAT(temperatureFromSensor("61.8°C\n"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("61.8°C"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("0.0°C"), Optional(0.0));
  EXPECT_THAT(temperatureFromSensor("CPU: 61.8°C\r\n"), Optional(61.8));
}

TEST(TemperatureFromSensor, letterC_thatBeginsAWord_isNoUnit) {
  EXPECT_EQ(temperatureFromSensor("2 CPU: 61.8°C"), 61.8);
  EXPECT_EQ(temperatureFromSensor("0 C1 61.8 C"), 61.8);
  EXPECT_EQ(temperatureFromSensor("5 C, 61.8°C"), 5);
}

TEST(TemperatureFromSensor, numberBeforeADegreeSign_countsBeforeAllOthers) {
  EXPECT_THAT(temperatureFromSensor("Sensor 2: 61.8°C"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("2 fans, 3000 rpm, 61.8 °C"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("Sensor 2: 61.8C"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("Sensor 2: 61.8 \t C"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("Sensor 2: 61.8°"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("61.8°C 70.5°C"), Optional(61.8)) << "the first of several";
}

TEST(TemperatureFromSensor, noDegreeSign_givesTheFirstNumber) {
  EXPECT_THAT(temperatureFromSensor("61.8"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("about 61.8, then 70"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("61.8 c, 70"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("7\nC 61.8"), Optional(7.0)) << "a line break is no blank";
  EXPECT_THAT(temperatureFromSensor("7\n61.8\n°C"), Optional(7.0));
  EXPECT_THAT(temperatureFromSensor("7, 61.8\xB0"), Optional(7.0)) << "a byte alone is no degree sign";
  EXPECT_THAT(temperatureFromSensor("7, 61.8\xC2"), Optional(7.0));
  EXPECT_THAT(temperatureFromSensor("7, 61.8\xC2\xBA"), Optional(7.0)) << "nor is an ordinal's sign one";
}

TEST(TemperatureFromSensor, decimalSeparator_isAPointOrAComma) {
  EXPECT_THAT(temperatureFromSensor("61,8°C"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("61,8"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("61"), Optional(61.0));
  EXPECT_THAT(temperatureFromSensor("61."), Optional(61.0));
  EXPECT_THAT(temperatureFromSensor("61,"), Optional(61.0));
  EXPECT_THAT(temperatureFromSensor("61;8"), Optional(61.0));
  EXPECT_THAT(temperatureFromSensor("61..8"), Optional(61.0));
  EXPECT_THAT(temperatureFromSensor("1e3"), Optional(1.0));
}

TEST(TemperatureFromSensor, minusDirectlyBefore_negates) {
  EXPECT_THAT(temperatureFromSensor("-61.8°C"), Optional(-61.8));
  EXPECT_THAT(temperatureFromSensor("Sensor 2: -61,8 °C"), Optional(-61.8));
  EXPECT_THAT(temperatureFromSensor("-5"), Optional(-5.0));
  EXPECT_THAT(temperatureFromSensor("- 5"), Optional(5.0));
  EXPECT_THAT(temperatureFromSensor("+5"), Optional(5.0));
  EXPECT_THAT(temperatureFromSensor("\xE2\x88\x92"
                                    "5"),
              Optional(5.0))
      << "only ASCII's";
  EXPECT_THAT(temperatureFromSensor("-5 61.8°C"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("-0.0°C"), Optional(0.0));
}

TEST(TemperatureFromSensor, textWithoutANumber_isAbsent) {
  for (const std::string_view text : {"", "°C", "-°C", "C", ".", "-", "n/a", "nan", "inf", "\xD9\xA5\xC2\xB0"}) {
    EXPECT_EQ(temperatureFromSensor(text), std::nullopt) << text;
  }
}

TEST(TemperatureFromSensor, numberBeyondAllNumbers_isAbsent) {
  const std::string digits(400, '9');
  EXPECT_EQ(temperatureFromSensor(digits), std::nullopt);
  EXPECT_EQ(temperatureFromSensor("-" + digits + "°C"), std::nullopt);
  EXPECT_EQ(temperatureFromSensor("5 " + digits + "°C"), std::nullopt);
  EXPECT_THAT(temperatureFromSensor(digits + " 5°C"), Optional(5.0));
}

TEST(TemperatureFromSensor, longNumbers_areReadLikeShortOnes) {
  EXPECT_THAT(temperatureFromSensor(std::string(400, '0') + "5°C"), Optional(5.0));
  EXPECT_THAT(temperatureFromSensor("5," + std::string(400, '0') + "°C"), Optional(5.0));
  EXPECT_THAT(temperatureFromSensor("0." + std::string(400, '0') + "1°C"), Optional(0.0));
  EXPECT_THAT(temperatureFromSensor("0." + std::string(310, '0') + "1°C"), Optional(0.0))
      << "no library's least number";
  EXPECT_THAT(temperatureFromSensor(std::string(400, '0') + "5." + std::string(400, '0') + "1°C"), Optional(5.0));
}

TEST(TemperatureFromSensor, bytesThatAreNoText_areSteppedOver) {
  const std::string junk = "\0\xFF\xC2\xF0\x9F\xED\xA0\x80"s;
  EXPECT_THAT(temperatureFromSensor(junk + "61.8°C" + junk), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor(junk + "61.8" + junk), Optional(61.8));
  EXPECT_EQ(temperatureFromSensor(junk), std::nullopt);
}

TEST(TemperatureFromSensor, hugeTexts_areReadInTimeInProportion) {
  EXPECT_EQ(temperatureFromSensor(repeated("7", kHuge)), std::nullopt);
  EXPECT_THAT(temperatureFromSensor(repeated("7.", kHuge)), Optional(7.7));
  EXPECT_THAT(temperatureFromSensor(repeated("7 ", kHuge)), Optional(7.0));
  EXPECT_THAT(temperatureFromSensor(repeated("7 ", kHuge) + "°"), Optional(7.0));
  EXPECT_THAT(temperatureFromSensor("7" + repeated(" ", kHuge) + "5" + repeated(" ", kHuge) + "C"), Optional(5.0));
  EXPECT_THAT(temperatureFromSensor("0." + repeated("7", kHuge)), Optional(DoubleEq(7.0 / 9)));
  EXPECT_EQ(temperatureFromSensor(repeated(" ", kHuge)), std::nullopt);
  EXPECT_EQ(temperatureFromSensor(repeated("-", kHuge)), std::nullopt);
  EXPECT_EQ(temperatureFromSensor(repeated("°", kHuge)), std::nullopt);
}

/// The user's locale for as long as this lives: one with decimal commas and digits in groups.
class CommaLocale {
 public:
  CommaLocale() : streams_(std::locale::global(std::locale(std::locale(), new Punctuation))) {
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8"}) {
      if (std::setlocale(LC_ALL, name) != nullptr) {
        break;
      }
    }
  }
  ~CommaLocale() {
    std::locale::global(streams_);
    std::setlocale(LC_ALL, c_.c_str());
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

 private:
  struct Punctuation : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  std::string c_ = std::setlocale(LC_ALL, nullptr);
  std::locale streams_;
};

TEST(StatusParsers, localeWithDecimalCommas_changesNothing) {
  const CommaLocale locale;
  std::istringstream reader("1,5");
  double value = 0;
  ASSERT_TRUE(reader >> value && value == 1.5) << "the locale is in force";

  EXPECT_THAT(cpuUsageFromTop(kTop), Optional(DoubleEq(20.86 + 12.94)));
  EXPECT_THAT(cpuUsageFromTop(cpuLine("1234.5", "0.25")), Optional(1234.75));
  EXPECT_THAT(memoryUsedFromVMStat(kVMStat), Optional(std::uint64_t{400000 + 150000 + 70000} * 16384));
  EXPECT_THAT(temperatureFromSensor("61.8°C"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("61,8°C"), Optional(61.8));
  EXPECT_THAT(temperatureFromSensor("1234.5"), Optional(1234.5));
}

}  // namespace
}  // namespace cirrovane
