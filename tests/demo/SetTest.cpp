#include "tests/demo/DemoMacFixture.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using ::testing::HasSubstr;

class SetTest : public DemoMacTest {
 protected:
  void SetUp() override { writeFile(file_); }

  ChildResult set(std::vector<std::string> assignments) const {
    assignments.insert(assignments.begin(), {"set", file_});
    return demo(assignments);
  }

  void expectRefusal(const std::vector<std::string>& assignments, const std::string& message) const {
    setICloudAttribute(file_, "isUploading=true\n");
    const ChildResult result = set(assignments);
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_THAT(result.err, HasSubstr(message));
    EXPECT_EQ(iCloudAttribute(file_), "isUploading=true\n");
  }

  const std::string file_ = folder_ / "File.txt";
};

TEST_F(SetTest, set_everyKey_writesItsLine) {
  const std::vector<std::string> lines = {"isUbiquitous=true",
                                          "isUploaded=false",
                                          "isUploading=true",
                                          "hasUnresolvedConflicts=false",
                                          "downloadingStatus=downloaded",
                                          "uploadingError=The file couldn’t be uploaded: a = b, c.",
                                          "downloadingError=[x, {}]",
                                          "isExcludedFromSync=true",
                                          "isSyncPaused=false",
                                          "isListable=false"};
  EXPECT_EQ(set(lines).exitStatus, 0);
  std::string expected;
  for (const std::string& line : lines) {
    expected += line + "\n";
  }
  EXPECT_EQ(iCloudAttribute(file_), expected);
}

TEST_F(SetTest, set_keyWithValue_replacesItAndKeepsTheRest) {
  setICloudAttribute(file_, "isUploaded=false\nsharedBy=Anna\n\nisUploading=true\nisUploaded=false\nno separator");
  EXPECT_EQ(set({"isUploaded=true"}).exitStatus, 0);
  EXPECT_EQ(iCloudAttribute(file_), "isUploaded=true\nsharedBy=Anna\n\nisUploading=true\nno separator\n");
}

TEST_F(SetTest, set_keyThatOnlyBeginsAlike_staysApart) {
  setICloudAttribute(file_, "isUploadedBefore=x\n");
  EXPECT_EQ(set({"isUploaded=true"}).exitStatus, 0);
  EXPECT_EQ(iCloudAttribute(file_), "isUploadedBefore=x\nisUploaded=true\n");
}

TEST_F(SetTest, set_keyTwice_takesTheLast) {
  EXPECT_EQ(set({"isUploaded=true", "isUploaded=false"}).exitStatus, 0);
  EXPECT_EQ(iCloudAttribute(file_), "isUploaded=false\n");
}

TEST_F(SetTest, set_emptyValue_removesTheKey) {
  setICloudAttribute(file_, "isUploaded=false\nuploadingError=No space\n");
  EXPECT_EQ(set({"uploadingError="}).exitStatus, 0);
  EXPECT_EQ(iCloudAttribute(file_), "isUploaded=false\n");
}

TEST_F(SetTest, set_lastKeyRemoved_removesTheAttribute) {
  setICloudAttribute(file_, "isUploaded=false\n\n");
  EXPECT_EQ(set({"isUploaded="}).exitStatus, 0);
  EXPECT_EQ(iCloudAttribute(file_), std::nullopt);
  EXPECT_EQ(set({"isUploaded="}).exitStatus, 0);
}

TEST_F(SetTest, set_file_keepsItsDate) {
  setModified(file_, 1'700'000'000);
  EXPECT_EQ(set({"isUploaded=false"}).exitStatus, 0);
  EXPECT_EQ(modifiedAt(file_), 1'700'000'000);
}

TEST_F(SetTest, set_relativeNameOfFolder_works) {
  makeFolder(folder_ / "Essay.pages");
  EXPECT_EQ(demo({"set", "Essay.pages/", "isUploaded=false"}, {.workingDirectory = folder_.path(), .environment = {}})
                .exitStatus,
            0);
  EXPECT_EQ(iCloudAttribute(folder_ / "Essay.pages"), "isUploaded=false\n");
}

TEST_F(SetTest, set_fileOfSettledMac_changesTheVerdict) {
  succeed("create");
  succeed("settle");
  const std::string file = drive() + "/School/Timetable.ics";
  EXPECT_EQ(demo({"set", file, "isUploaded=false"}).exitStatus, 0);
  EXPECT_EQ(check().exitStatus, 1);
  EXPECT_EQ(demo({"set", file, "isUploaded=true"}).exitStatus, 0);
  EXPECT_EQ(check().exitStatus, 0);
}

TEST_F(SetTest, set_watchedFolderOfSettledMacNotListable_changesTheVerdict) {
  succeed("create");
  succeed("settle");
  const std::string watched = drive() + "/School";
  EXPECT_EQ(demo({"set", watched, "isListable=false"}).exitStatus, 0);
  EXPECT_EQ(check().exitStatus, 1);
  succeed("settle");
  EXPECT_EQ(iCloudAttribute(watched).value_or("").find("isListable"), std::string::npos);
  EXPECT_EQ(check().exitStatus, 0);
}

TEST_F(SetTest, set_withoutSeparator_refuses) {
  expectRefusal({"isUploaded=true", "isUploading"}, "key=value");
}

TEST_F(SetTest, set_withoutKey_refuses) {
  expectRefusal({"=true"}, "is no key");
}

TEST_F(SetTest, set_unknownKey_refusesAndListsThoseThereAre) {
  expectRefusal({"isuploaded=true"}, "hasUnresolvedConflicts, downloadingStatus");
  expectRefusal({"sharedBy="}, "is no key");
}

TEST_F(SetTest, set_valueThatTheKeyCannotHave_refusesAndListsThoseItCan) {
  for (const char* key : {"isUploaded", "isExcludedFromSync", "isSyncPaused", "isListable"}) {
    expectRefusal({std::string(key) + "=yes"}, "true or false");
  }
  expectRefusal({"downloadingStatus=Current"}, "current, downloaded or notDownloaded");
}

TEST_F(SetTest, set_textOfSeveralLines_refuses) {
  expectRefusal({"uploadingError=a\nisUploaded=false"}, "one line");
}

TEST_F(SetTest, set_textThatIsNotUTF8_refuses) {
  expectRefusal({"uploadingError=\xff"}, "UTF-8");
}

TEST_F(SetTest, set_withoutAssignment_refuses) {
  expectRefusal({}, "KEY=VALUE");
}

TEST_F(SetTest, set_emptyFileName_refuses) {
  EXPECT_EQ(demo({"set", "", "isUploaded=true"}).exitStatus, 2);
}

TEST_F(SetTest, set_missingFile_saysSo) {
  const ChildResult result = demo({"set", folder_ / "nothing", "isUploaded=true"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("There is no file"));
}

TEST_F(SetTest, set_symbolicLink_refusesAndLeavesItsTarget) {
  std::filesystem::create_symlink(file_, folder_ / "link");
  const ChildResult result = demo({"set", folder_ / "link", "isUploaded=true"});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("symbolic link"));
  EXPECT_EQ(iCloudAttribute(file_), std::nullopt);
}

TEST_F(SetTest, set_textTooLongForTheFileSystem_saysSo) {
  const ChildResult result = set({"uploadingError=" + std::string(100'000, 'x')});
  EXPECT_EQ(result.exitStatus, 3);
  EXPECT_THAT(result.err, HasSubstr("no room"));
  EXPECT_EQ(iCloudAttribute(file_), std::nullopt);
}

TEST_F(SetTest, set_fileSystemWithoutAttributes_saysSo) {
  const auto result =
      demoOnMount("-t ramfs", folder_ / "mount", "touch \"$1/File\"; \"$0\" set \"$1/File\" isUploaded=true; echo $?");
  if (!result) {
    GTEST_SKIP() << "This user may not mount.";
  }
  EXPECT_EQ(result->out, "3\n");
  EXPECT_THAT(result->err, HasSubstr("has no extended attributes"));
}

}  // namespace
}  // namespace cirrovane::test
