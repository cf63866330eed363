#include "platform/linux/walk/ICloudAttribute.h"

#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

using namespace std::string_view_literals;

TEST(ICloudAttribute, empty_isACleanUbiquitousItem) {
  const auto values = parseICloudAttribute("");
  ASSERT_TRUE(values);
  EXPECT_TRUE(values->isUbiquitousItem);
  EXPECT_FALSE(values->isUploaded);
  EXPECT_FALSE(values->isUploading);
  EXPECT_FALSE(values->hasUnresolvedConflicts);
  EXPECT_FALSE(values->downloadingStatus);
  EXPECT_FALSE(values->uploadingError);
  EXPECT_FALSE(values->downloadingError);
  EXPECT_FALSE(values->contentModificationDate);
}

TEST(ICloudAttribute, everyKey_atOnce_isRead) {
  const auto values = parseICloudAttribute(
      "isUbiquitous=true\nisUploaded=false\nisUploading=true\nhasUnresolvedConflicts=true\n"
      "downloadingStatus=notDownloaded\nuploadingError=No room.\ndownloadingError=No network.\n");
  ASSERT_TRUE(values);
  EXPECT_TRUE(values->isUbiquitousItem);
  EXPECT_EQ(values->isUploaded, false);
  EXPECT_EQ(values->isUploading, true);
  EXPECT_EQ(values->hasUnresolvedConflicts, true);
  EXPECT_EQ(values->downloadingStatus, DownloadingStatus::notDownloaded);
  EXPECT_EQ(values->uploadingError, "No room.");
  EXPECT_EQ(values->downloadingError, "No network.");
}

TEST(ICloudAttribute, isUbiquitous_trueOrFalse_isTaken) {
  EXPECT_TRUE(parseICloudAttribute("isUbiquitous=true")->isUbiquitousItem);
  EXPECT_FALSE(parseICloudAttribute("isUbiquitous=false")->isUbiquitousItem);
}

TEST(ICloudAttribute, isUbiquitous_missingBesideOtherKeys_isTrue) {
  EXPECT_TRUE(parseICloudAttribute("isUploaded=true\nother=1")->isUbiquitousItem);
}

TEST(ICloudAttribute, keysOfTheCoverage_areReadForItAlone) {
  const auto values = parseICloudAttribute("isExcludedFromSync=true\nisSyncPaused=false", WalkScope::everything);
  ASSERT_TRUE(values);
  EXPECT_EQ(values->isExcludedFromSync, true);
  EXPECT_EQ(values->isSyncPaused, false);
  const auto ofScan = parseICloudAttribute("isExcludedFromSync=true\nisSyncPaused=false");
  ASSERT_TRUE(ofScan);
  EXPECT_EQ(ofScan->isExcludedFromSync, std::nullopt);
  EXPECT_EQ(ofScan->isSyncPaused, std::nullopt);
}

TEST(ICloudAttribute, wrongValueOfACoverageKey_failsTheCoverageAlone) {
  for (const char* text : {"isExcludedFromSync=perhaps", "isSyncPaused="}) {
    EXPECT_TRUE(parseICloudAttribute(text)) << text;
    EXPECT_FALSE(parseICloudAttribute(text, WalkScope::everything)) << text;
  }
}

struct FlagCase {
  const char* key;
  std::optional<bool> ResourceValues::*member;
};

class ICloudAttributeFlag : public testing::TestWithParam<FlagCase> {};

TEST_P(ICloudAttributeFlag, value_trueOrFalse_setsThatFlagAlone) {
  for (const bool flag : {true, false}) {
    const std::string text = std::string(GetParam().key) + (flag ? "=true" : "=false");
    const auto values = parseICloudAttribute(text);
    ASSERT_TRUE(values);
    EXPECT_EQ((*values).*GetParam().member, flag);
    for (const auto member :
         {&ResourceValues::isUploaded, &ResourceValues::isUploading, &ResourceValues::hasUnresolvedConflicts}) {
      if (member != GetParam().member) {
        EXPECT_FALSE(((*values).*member).has_value());
      }
    }
  }
}

TEST_P(ICloudAttributeFlag, value_ofAnythingElse_isMalformed) {
  for (const std::string_view value : {""sv, "True"sv, "TRUE"sv, "1"sv, "0"sv, "yes"sv, " true"sv, "true "sv,
                                       "true\r"sv, "truetrue"sv, "tru"sv, "=true"sv, "true\0"sv, "\0"sv}) {
    EXPECT_FALSE(parseICloudAttribute(std::string(GetParam().key) + "=" + std::string(value))) << value;
  }
}

INSTANTIATE_TEST_SUITE_P(All, ICloudAttributeFlag,
                         testing::Values(FlagCase{"isUploaded", &ResourceValues::isUploaded},
                                         FlagCase{"isUploading", &ResourceValues::isUploading},
                                         FlagCase{"hasUnresolvedConflicts", &ResourceValues::hasUnresolvedConflicts}),
                         [](const auto& tested) { return std::string(tested.param.key); });

TEST(ICloudAttribute, isUbiquitous_withAnotherValue_isMalformed) {
  for (const std::string_view value : {""sv, "yes"sv, "True"sv, "true "sv}) {
    EXPECT_FALSE(parseICloudAttribute("isUbiquitous=" + std::string(value))) << value;
  }
}

TEST(ICloudAttribute, downloadingStatus_ofEachKind_isTaken) {
  EXPECT_EQ(parseICloudAttribute("downloadingStatus=current")->downloadingStatus, DownloadingStatus::current);
  EXPECT_EQ(parseICloudAttribute("downloadingStatus=downloaded")->downloadingStatus, DownloadingStatus::downloaded);
  EXPECT_EQ(parseICloudAttribute("downloadingStatus=notDownloaded")->downloadingStatus,
            DownloadingStatus::notDownloaded);
}

TEST(ICloudAttribute, downloadingStatus_withAnotherValue_isMalformed) {
  for (const std::string_view value :
       {""sv, "Current"sv, "current "sv, " current"sv, "notdownloaded"sv, "not downloaded"sv, "true"sv}) {
    EXPECT_FALSE(parseICloudAttribute("downloadingStatus=" + std::string(value))) << value;
  }
}

TEST(ICloudAttribute, isListable_trueOrFalse_isAccepted) {
  for (const char* text : {"isListable=true", "isListable=false"}) {
    const auto values = parseICloudAttribute(text);
    ASSERT_TRUE(values);
    EXPECT_TRUE(values->isUbiquitousItem);
  }
}

TEST(ICloudAttribute, isListable_withAnotherValue_isMalformed) {
  for (const std::string_view value : {""sv, "no"sv, "False"sv, "false "sv, "0"sv}) {
    EXPECT_FALSE(parseICloudAttribute("isListable=" + std::string(value))) << value;
  }
}

TEST(ICloudAttribute, isExcludedFromSyncAndIsSyncPaused_withAnyValue_areIgnored) {
  for (const std::string_view value : {""sv, "true"sv, "false"sv, "maybe"sv}) {
    for (const char* key : {"isExcludedFromSync=", "isSyncPaused="}) {
      const auto values = parseICloudAttribute(key + std::string(value) + "\nisUploaded=false");
      ASSERT_TRUE(values) << key << value;
      EXPECT_EQ(values->isUploaded, false);
    }
  }
}

TEST(ICloudAttribute, listing_isForbiddenByFalseAlone) {
  for (const std::string_view text :
       {""sv, "isUploaded=false"sv, "isListable=true"sv, "isListable=maybe"sv, "isListable="sv, "isListable"sv,
        "isListable=false "sv, " isListable=false"sv, "islistable=false"sv, "x=isListable=false"sv}) {
    EXPECT_TRUE(allowsListing(text)) << text;
  }
  for (const std::string_view text : {"isListable=false"sv, "isListable=false\n"sv,
                                      "isUploaded=true\nisListable=false"sv, "\n\nisListable=false\nother=x"sv}) {
    EXPECT_FALSE(allowsListing(text)) << text;
  }
}

TEST(ICloudAttribute, listing_ofRepeatedKeys_theLastHolds) {
  EXPECT_TRUE(allowsListing("isListable=false\nisListable=true"));
  EXPECT_FALSE(allowsListing("isListable=true\nisListable=false"));
}

TEST(ICloudAttribute, listing_isForbiddenAlsoWhereTheRestIsMalformed) {
  for (const std::string_view text : {"bad\nisListable=false"sv, "isListable=false\nisUploaded=maybe"sv,
                                      "\xFF=\xFF\nisListable=false"sv, "\0\nisListable=false\nbad"sv}) {
    EXPECT_FALSE(parseICloudAttribute(text));
    EXPECT_FALSE(allowsListing(text));
  }
}

TEST(ICloudAttribute, errorText_isTheWholeRestOfTheLine) {
  for (const std::string_view text : {""sv, " "sv, "a=b=c"sv, "  spaces kept  "sv, "tab\there"sv, "carriage return\r"sv,
                                      "Kein Platz \xE2\x82\xAC \xF0\x9F\x98\x80"sv, "nul \0 inside"sv, "="sv}) {
    const std::string upload = "isUploaded=true\nuploadingError=" + std::string(text) + "\nisUploading=false";
    const auto first = parseICloudAttribute(upload);
    ASSERT_TRUE(first) << text;
    EXPECT_EQ(first->uploadingError, text);
    EXPECT_EQ(first->isUploading, false);
    EXPECT_FALSE(first->downloadingError);

    const std::string download = "downloadingError=" + std::string(text);
    const auto second = parseICloudAttribute(download);
    ASSERT_TRUE(second) << text;
    EXPECT_EQ(second->downloadingError, text);
    EXPECT_FALSE(second->uploadingError);
  }
}

TEST(ICloudAttribute, errorText_pointsIntoTheGivenBytes) {
  const std::string bytes = "uploadingError=No room.";
  const auto values = parseICloudAttribute(bytes);
  ASSERT_TRUE(values && values->uploadingError);
  EXPECT_EQ(values->uploadingError->data(), bytes.data() + bytes.find('N'));
}

TEST(ICloudAttribute, unknownKeys_areIgnored) {
  const auto values = parseICloudAttribute(
      "colour=blue\nisuploaded=maybe\nISUPLOADED=\n isUploaded=spaced\nisUploaded =spaced\n=no key\nisUploaded=false");
  ASSERT_TRUE(values);
  EXPECT_EQ(values->isUploaded, false);
  EXPECT_TRUE(values->isUbiquitousItem);
}

TEST(ICloudAttribute, blankLines_areIgnored) {
  const auto values = parseICloudAttribute("\n\n  \n\t\nisUploaded=false\n\r\n \t \n\n");
  ASSERT_TRUE(values);
  EXPECT_EQ(values->isUploaded, false);
}

TEST(ICloudAttribute, repeatedKeys_theLastHolds) {
  const auto values = parseICloudAttribute(
      "isUploaded=true\nisUploaded=false\nuploadingError=first\nuploadingError=second\n"
      "downloadingStatus=current\ndownloadingStatus=downloaded\nisUbiquitous=true\nisUbiquitous=false\n"
      "downloadingError=x\ndownloadingError=");
  ASSERT_TRUE(values);
  EXPECT_EQ(values->isUploaded, false);
  EXPECT_EQ(values->uploadingError, "second");
  EXPECT_EQ(values->downloadingError, "");
  EXPECT_EQ(values->downloadingStatus, DownloadingStatus::downloaded);
  EXPECT_FALSE(values->isUbiquitousItem);
}

TEST(ICloudAttribute, repeatedKeys_withABadValueThatIsNotTheLast_areStillMalformed) {
  EXPECT_FALSE(parseICloudAttribute("isUploaded=maybe\nisUploaded=true"));
}

TEST(ICloudAttribute, line_withoutEqualsSign_isMalformed) {
  for (const std::string_view text : {"isUploaded"sv, "x"sv, "isUploaded=true\nisUploading"sv, "\n\nunknown\n"sv,
                                      "\0"sv, "isUploaded=true\n\0"sv, "\v"sv}) {
    EXPECT_FALSE(parseICloudAttribute(text)) << text;
  }
}

TEST(ICloudAttribute, finalLineEnd_makesNoDifference) {
  EXPECT_EQ(parseICloudAttribute("isUploaded=false")->isUploaded, false);
  EXPECT_EQ(parseICloudAttribute("isUploaded=false\n")->isUploaded, false);
}

TEST(ICloudAttribute, invalidUTF8_anywhere_isMalformed) {
  for (const std::string_view text :
       {"\xFF"sv, "uploadingError=\xC3"sv, "uploadingError=\xC3(\nisUploaded=true"sv, "unknown=\xED\xA0\x80"sv,
        "\xC0\xAF=1"sv, "isUploaded=true\nunknown=\xF4\x90\x80\x80\n"sv}) {
    EXPECT_FALSE(parseICloudAttribute(text));
  }
}

TEST(ICloudAttribute, NULBytes_inKeysAndUnknownValues_areOrdinaryCharacters) {
  const auto values = parseICloudAttribute("isUploaded\0=false\nunknown=\0\nisUploading=true"sv);
  ASSERT_TRUE(values);
  EXPECT_FALSE(values->isUploaded);
  EXPECT_EQ(values->isUploading, true);
}

TEST(ICloudAttribute, hugeText_isReadToItsEnd) {
  const std::string error(8 * 1024 * 1024, 'e');
  std::string bytes = "uploadingError=" + error + "\n";
  for (int line = 0; line < 200'000; ++line) {
    bytes += "unknown=x\n\n";
  }
  bytes += "isUploaded=false";
  const auto values = parseICloudAttribute(bytes);
  ASSERT_TRUE(values);
  EXPECT_EQ(values->uploadingError, error);
  EXPECT_EQ(values->isUploaded, false);
  EXPECT_FALSE(parseICloudAttribute(bytes + "\nno separator"));
}

}  // namespace
}  // namespace cirrovane
