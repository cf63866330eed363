#include "platform/macos/plain/ListingError.h"

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

const FolderAlias kRoot{"/Users/test/Work", "/Volumes/Disk/Work"};

TEST(ListingError, item_ofTheGivenURL_comesBeforeTheErrorsOwn) {
  EXPECT_EQ(itemOf({.givenPath = "/a", .pathOfURL = "/b", .plainPath = "/c"}), "/a");
}

TEST(ListingError, item_withoutAGivenURL_isTheErrorsOwn) {
  EXPECT_EQ(itemOf({.givenPath = {}, .pathOfURL = "/b", .plainPath = "/c"}), "/b");
  EXPECT_EQ(itemOf({.givenPath = {}, .pathOfURL = {}, .plainPath = "/c"}), "/c");
}

TEST(ListingError, item_ofAnEmptyPath_isNone) {
  EXPECT_EQ(itemOf({.givenPath = "", .pathOfURL = "/b", .plainPath = {}}), "/b");
  EXPECT_EQ(itemOf({.givenPath = "", .pathOfURL = "", .plainPath = ""}), std::nullopt);
}

TEST(ListingError, errorAboutTheRoot_endsTheListingHoweverItIsNamed) {
  for (const char* path : {"/Users/test/Work", "/Users/test/Work/", "/Volumes/Disk/Work", "/Volumes/Disk/Work/"}) {
    EXPECT_TRUE(endsListing({.givenPath = path, .pathOfURL = {}, .plainPath = {}}, kRoot)) << path;
    EXPECT_TRUE(endsListing({.givenPath = {}, .pathOfURL = path, .plainPath = {}}, kRoot)) << path;
    EXPECT_TRUE(endsListing({.givenPath = {}, .pathOfURL = {}, .plainPath = path}, kRoot)) << path;
  }
}

TEST(ListingError, errorAboutAnItemBelow_doesNotEndTheListing) {
  for (const char* path : {"/Users/test/Work/closed", "/Volumes/Disk/Work/a/closed", "/Volumes/Disk/Work/closed/"}) {
    EXPECT_FALSE(endsListing({.givenPath = path, .pathOfURL = {}, .plainPath = {}}, kRoot)) << path;
    EXPECT_FALSE(endsListing({.givenPath = {}, .pathOfURL = path, .plainPath = {}}, kRoot)) << path;
    EXPECT_FALSE(endsListing({.givenPath = {}, .pathOfURL = {}, .plainPath = path}, kRoot)) << path;
  }
}

TEST(ListingError, errorThatNamesNoItem_endsTheListing) {
  EXPECT_TRUE(endsListing({}, kRoot));
  EXPECT_TRUE(endsListing({.givenPath = "", .pathOfURL = {}, .plainPath = ""}, kRoot));
}

TEST(ListingError, errorAboutSomethingElsewhere_endsTheListing) {
  for (const char* path : {"/", "/Users/test", "/Users/test/Workshop/a", "/private/elsewhere", "Work/a"}) {
    EXPECT_TRUE(endsListing({.givenPath = path, .pathOfURL = {}, .plainPath = {}}, kRoot)) << path;
  }
}

}  // namespace
}  // namespace cirrovane
