#include "base/JSONReader.h"
#include "base/JSONWriter.h"
#include "core/BlockerReason.h"
#include "core/HealthState.h"
#include "tests/core/Builders.h"
#include "tests/support/RawValue.h"

#include <array>
#include <cctype>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

struct ReasonRow {
  BlockerReason reason;
  std::string text;
  std::string title;
};

const std::vector<ReasonRow>& reasonRows() {
  static const std::vector<ReasonRow> rows = {
      {BlockerReason::unavailableFolder, "unavailableFolder", "Folder Unavailable"},
      {BlockerReason::outsideICloud, "outsideICloud", "Outside iCloud"},
      {BlockerReason::unresolvedConflict, "unresolvedConflict", "Conflict Detected"},
      {BlockerReason::uploadError, "uploadError", "Upload Error"},
      {BlockerReason::downloadError, "downloadError", "Download Error"},
      {BlockerReason::stalledUpload, "stalledUpload", "Upload Stalled"},
      {BlockerReason::notUploaded, "notUploaded", "Not Uploaded"},
      {BlockerReason::notDownloaded, "notDownloaded", "Cloud-Only (Not Local)"},
  };
  return rows;
}

/// The text in every spelling that differs from it by the case of one letter, and wholly in either case.
std::vector<std::string> otherCapitalisations(const std::string& text) {
  std::vector<std::string> others;
  std::string upper;
  std::string lower;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const auto letter = static_cast<unsigned char>(text[index]);
    std::string other = text;
    other[index] = static_cast<char>(std::isupper(letter) != 0 ? std::tolower(letter) : std::toupper(letter));
    others.push_back(other);
    upper += static_cast<char>(std::toupper(letter));
    lower += static_cast<char>(std::tolower(letter));
  }
  others.push_back(upper);
  if (lower != text) {
    others.push_back(lower);
  }
  return others;
}

TEST(BlockerReason, allReasons_standInDeclarationOrder) {
  ASSERT_EQ(kAllBlockerReasons.size(), reasonRows().size());
  for (std::size_t index = 0; index < reasonRows().size(); ++index) {
    EXPECT_EQ(kAllBlockerReasons.at(index), reasonRows()[index].reason);
    EXPECT_EQ(static_cast<std::size_t>(kAllBlockerReasons.at(index)), index);
  }
}

TEST(BlockerReason, eachReason_hasItsTextInBothDirections) {
  for (const ReasonRow& row : reasonRows()) {
    EXPECT_EQ(rawValue(row.reason), row.text);
    EXPECT_EQ(caseOf<BlockerReason>(row.text), row.reason);
    EXPECT_EQ(encodeJSON(row.reason), "\"" + row.text + "\"");
    EXPECT_EQ(decodeJSON<BlockerReason>("\"" + row.text + "\""), row.reason);
  }
}

TEST(BlockerReason, eachReason_hasItsTitle) {
  for (const ReasonRow& row : reasonRows()) {
    EXPECT_EQ(displayTitle(row.reason), row.title);
  }
}

TEST(BlockerReason, otherCapitalisation_isRejected) {
  for (const ReasonRow& row : reasonRows()) {
    for (const std::string& other : otherCapitalisations(row.text)) {
      EXPECT_FALSE(caseOf<BlockerReason>(other)) << other;
      EXPECT_FALSE(decodeJSON<BlockerReason>("\"" + other + "\"")) << other;
    }
  }
}

TEST(BlockerReason, anyOtherText_isRejectedAndLeavesTheTarget) {
  for (const std::string& text : {std::string(), std::string("unknown"), std::string("notUploaded "),
                                  std::string(" notUploaded"), std::string("notUploade"), std::string("notUploadedd"),
                                  std::string("Not Uploaded"), std::string("notUploaded\0", 12), std::string("6")}) {
    BlockerReason target = BlockerReason::uploadError;
    EXPECT_FALSE(fromRawValue(text, target)) << text;
    EXPECT_EQ(target, BlockerReason::uploadError);
  }
}

TEST(BlockerReason, numberInFile_isRejected) {
  EXPECT_FALSE(decodeJSON<BlockerReason>("0"));
}

TEST(HealthState, eachState_hasItsTextInBothDirectionsAndOrder) {
  const std::vector<std::string> texts = {"safe", "warning", "danger"};
  const std::vector<HealthState> states = {HealthState::safe, HealthState::warning, HealthState::danger};
  ASSERT_EQ(kHealthStates.size(), states.size());
  for (std::size_t index = 0; index < states.size(); ++index) {
    EXPECT_EQ(kHealthStates.at(index).value, states[index]);
    EXPECT_EQ(static_cast<std::size_t>(states[index]), index);
    EXPECT_EQ(rawValue(states[index]), texts[index]);
    EXPECT_EQ(caseOf<HealthState>(texts[index]), states[index]);
    EXPECT_EQ(encodeJSON(states[index]), "\"" + texts[index] + "\"");
    EXPECT_EQ(decodeJSON<HealthState>("\"" + texts[index] + "\""), states[index]);
    for (const std::string& other : otherCapitalisations(texts[index])) {
      EXPECT_FALSE(caseOf<HealthState>(other)) << other;
      EXPECT_FALSE(decodeJSON<HealthState>("\"" + other + "\"")) << other;
    }
  }
}

TEST(HealthState, anyOtherText_isRejectedAndLeavesTheTarget) {
  for (const std::string_view text : {"", "unknown", "safe ", "saf", "green", "0"}) {
    HealthState target = HealthState::danger;
    EXPECT_FALSE(fromRawValue(text, target)) << text;
    EXPECT_EQ(target, HealthState::danger);
  }
}

}  // namespace
}  // namespace cirrovane::test
