#!/usr/bin/env python3
"""Proves that type_check.py and facts_check.py see mistakes: each is planted in a copy, and the check has to name it.

A mistake is planted by a replacement in one file; one that finds nothing to replace fails, lest a test go blind when
the sources change.
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
TREE = HERE.parent.parent


class TypeCheckTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.overlay = pathlib.Path(folder.name) / "overlay"
        self.overlay.mkdir()
        self.sdk = pathlib.Path(folder.name) / "sdk"
        shutil.copytree(HERE / "sdk", self.sdk)

    def plant(self, path: str, *replacements):
        """Copies a file of the tree, with a mistake in it: each pair's first text replaced by its second."""
        text = (TREE / path).read_text(encoding="utf-8")
        for right, wrong in replacements:
            self.assertIn(right, text, f"nothing to replace in {path}")
            text = text.replace(right, wrong)
        copy = self.overlay / path
        copy.parent.mkdir(parents=True, exist_ok=True)
        copy.write_text(text, encoding="utf-8")

    def check(self, path: str) -> subprocess.CompletedProcess:
        return subprocess.run([sys.executable, str(HERE / "type_check.py"), "--overlay", str(self.overlay), "--sdk",
                               str(self.sdk), path], capture_output=True, text=True, check=False)

    def assert_found(self, path: str, diagnostic: str):
        result = self.check(path)
        self.assertEqual(result.returncode, 1, result.stdout + result.stderr)
        self.assertIn(diagnostic, result.stdout)
        print("\n".join(line for line in result.stdout.splitlines() if diagnostic in line))

    def test_copy_without_mistake_passes(self):
        self.plant("platform/macos/MacSystemInformation.mm", ("namespace cirrovane {", "namespace cirrovane {"))
        result = self.check("platform/macos/MacSystemInformation.mm")
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)

    def test_wrong_selector(self):
        self.plant("platform/macos/MacCollation.mm", ("localizedCaseInsensitiveCompare:", "localizedCaselessCompare:"))
        self.assert_found("platform/macos/MacCollation.mm",
                          "no visible @interface for 'NSString' declares the selector 'localizedCaselessCompare:'")

    def test_wrong_type_of_argument(self):
        self.plant("platform/macos/MacWorkspace.mm", ("openURL:address]", "openURL:text]"))
        self.assert_found("platform/macos/MacWorkspace.mm", "cannot initialize a parameter of type 'NSURL * _Nonnull'")

    def test_nil_where_none_may_be(self):
        self.plant("platform/macos/MacCollation.mm",
                   ("localizedCaseInsensitiveCompare:right]", "localizedCaseInsensitiveCompare:nil]"))
        self.assert_found("platform/macos/MacCollation.mm", "to a callee that requires a non-null argument")

    def test_changed_signature_of_delegate_method(self):
        self.plant("platform/macos/MacNotificationCenter.mm",
                   ("(UNNotification*)notification", "(UNNotificationResponse*)notification"))
        self.assert_found("platform/macos/MacNotificationCenter.mm", "conflicting parameter types")

    def test_missing_method_of_interface(self):
        self.plant("platform/macos/MacSystemInformation.h", ("  bool isLowPowerModeEnabled() const override;\n", ""))
        self.assert_found("platform/macos/MacMachine.cpp", "abstract class type 'cirrovane::MacSystemInformation'")

    def test_interface_that_grew(self):
        self.plant("platform/FileSystem.h",
                   ("virtual std::string homeDirectory() const = 0;",
                    "virtual std::string homeDirectory() const = 0;\n  virtual bool isLocal() const = 0;"))
        self.assert_found("platform/macos/MacMachine.cpp", "abstract class type 'cirrovane::MacFileSystem'")

    def test_method_that_does_not_match_interface(self):
        self.plant("platform/FileSystem.h",
                   ("virtual bool exists(const std::string& path) const = 0;",
                    "virtual bool exists(const std::string& path) = 0;"))
        self.assert_found("platform/macos/MacFileSystem.mm", "marked 'override' hides virtual member function")

    def test_executable_that_may_have_no_url(self):
        self.plant("platform/macos/MacBundle.mm",
                   ("executable != nil ? pathOf(executable) : std::string()", "pathOf(executable)"))
        self.assert_found("platform/macos/MacBundle.mm", "to a callee that requires a non-null")

    def test_cloud_asked_about_item_without_url(self):
        self.plant("platform/macos/SystemWalkCalls.mm",
                   ("      if (url == nil) {\n        return false;\n      }\n", ""))
        self.assert_found("platform/macos/SystemWalkCalls.mm", "to a callee that requires a non-null")

    def test_refused_answer_of_cloud_taken_for_empty_one(self):
        self.plant("platform/macos/SystemWalkCalls.mm",
                   ("      if (values == nil) {\n        return false;\n      }\n", ""))
        self.assert_found("platform/macos/SystemWalkCalls.mm", "to a callee that requires a non-null")

    def test_refusal_of_cloud_that_nobody_is_told_of(self):
        self.plant("platform/macos/plain/MacWalk.cpp",
                   ("      if (!isRead) {\n        item.values.reset();\n      }\n", ""))
        self.assert_found("platform/macos/plain/MacWalk.cpp", "unused variable 'isRead'")

    def test_extension_that_is_no_text(self):
        self.plant("platform/macos/SystemWalkCalls.mm",
                   ("text != nil ? [UTType typeWithFilenameExtension:text conformingToType:UTTypeDirectory] : nil",
                    "[UTType typeWithFilenameExtension:text conformingToType:UTTypeDirectory]"))
        self.assert_found("platform/macos/SystemWalkCalls.mm", "to a callee that requires a non-null")

    def test_url_made_of_text(self):
        self.plant("platform/macos/FoundationText.mm",
                   ("fileURLWithFileSystemRepresentation:path.c_str() isDirectory:isFolder relativeToURL:nil]",
                    "fileURLWithPath:textOf(path) isDirectory:isFolder]"))
        self.assert_found("platform/macos/FoundationText.mm", "no known class method for selector 'fileURLWithPath:")

    def test_value_of_another_class(self):
        self.plant("platform/macos/SystemWalkCalls.mm",
                   ("checked<NSError>(values_[foundationKey(key)], [NSError class])",
                    "checked<NSString>(values_[foundationKey(key)], [NSString class])"))
        self.assert_found("platform/macos/SystemWalkCalls.mm", "cannot initialize a variable of type 'NSError *")

    def test_walk_that_does_not_tell_how_it_ended(self):
        self.plant("platform/posix/walk/ReadAheadWalk.h", ("  bool isComplete() const override;\n", ""))
        self.assert_found("platform/macos/plain/MacWalk.cpp", "unimplemented pure virtual method 'isComplete'")

    def test_reader_that_does_not_tell_refusal_from_dataless(self):
        self.plant("platform/macos/plain/MacWalk.cpp",
                   ("  Listing afterOpeningFailed(int error) const override { return whatIsMissed(error); }\n", ""))
        self.assert_found("platform/macos/plain/MacWalk.cpp",
                          "unimplemented pure virtual method 'afterOpeningFailed'")

    def test_end_of_listing_that_nobody_weighs(self):
        self.plant("platform/posix/walk/ReadAheadWalk.cpp", ("    case Listing::failed:\n", ""))
        self.assert_found("platform/posix/walk/ReadAheadWalk.cpp", "enumeration value 'failed' not handled in switch")

    def test_number_of_attribute_that_is_not_the_kernels(self):
        self.plant("platform/macos/plain/PackedEntry.h",
                   ("kFlagsAttribute = 0x00040000", "kFlagsAttribute = 0x00080000"))
        self.assert_found("platform/macos/SystemWalkCalls.mm", "static assertion failed")

    def test_enumeration_that_grew(self):
        self.plant("platform/macos/plain/ResourceDictionary.h",
                   ("  isUbiquitousItem,\n  ubi", "  isUbiquitousItem,\n  isAlias,\n  ubi"))
        self.assert_found("platform/macos/SystemWalkCalls.mm", "enumeration value 'isAlias' not handled in switch")

    def test_leaked_power_source_blob(self):
        self.plant("platform/macos/MacSystemInformation.mm",
                   ("const OwnedBlob blob(IOPSCopyPowerSourcesInfo());",
                    "const CFTypeRef blob = IOPSCopyPowerSourcesInfo();"),
                   ("blob.get()", "blob"))
        self.assert_found("platform/macos/MacSystemInformation.mm", "Potential leak of an object stored into 'blob")

    def test_release_of_what_is_not_owned(self):
        self.plant("platform/macos/MacSystemInformation.mm",
                   ("      if (description != nullptr) {",
                    "      if (description != nullptr) {\n        CFRelease(description);"))
        self.assert_found("platform/macos/MacSystemInformation.mm", "Incorrect decrement of the reference count")

    def test_bridge_without_cast(self):
        self.plant("platform/macos/MacSystemInformation.mm",
                   ("(__bridge NSDictionary<NSString*, id>*)description", "(NSDictionary<NSString*, id>*)description"))
        self.assert_found("platform/macos/MacSystemInformation.mm", "requires a bridged cast")

    def declare(self, path: str, right: str, wrong: str):
        """Changes a declaration of Apple's interfaces."""
        header = self.sdk / path
        text = header.read_text(encoding="utf-8")
        self.assertIn(right, text)
        header.write_text(text.replace(right, wrong), encoding="utf-8")

    def assert_differs(self, difference: str):
        """That the declarations, as they were changed, no longer agree with what is known of them."""
        result = subprocess.run([sys.executable, str(HERE / "facts_check.py"), "--sdk", str(self.sdk)],
                                capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 1, result.stdout + result.stderr)
        self.assertIn(difference, result.stdout)
        print(difference)

    def test_unguarded_newer_interface(self):
        # The same declaration, as if the interface had come with a later system than the oldest one supported.
        self.declare("Foundation/Foundation.h", "lowPowerModeEnabled SDK_SINCE(12.0)",
                     "lowPowerModeEnabled SDK_SINCE(14.0)")
        self.assert_found("platform/macos/MacSystemInformation.mm",
                          "'isLowPowerModeEnabled' is only available on macOS 14.0 or newer")

    def test_path_that_the_system_would_decompose(self):
        self.plant("platform/macos/MacWorkspace.mm", ("[NSURL URLWithString:text]", "[NSURL fileURLWithPath:text]"))
        self.assert_found("platform/macos/MacWorkspace.mm", "no known class method for selector 'fileURLWithPath:'")

    def test_declaration_that_denies_nil(self):
        self.declare("Foundation/Foundation.h", "- (nullable NSDictionary<NSURLResourceKey, id>*)resourceValuesForKeys",
                     "- (NSDictionary<NSURLResourceKey, id>*)resourceValuesForKeys")
        self.assert_differs("NSURL -resourceValuesForKeys:error:: declared nonnull nonnull nullable, but is nullable")

    def test_declaration_that_allows_nil(self):
        self.declare("Foundation/Foundation.h", "- (nullable id)objectForKey:(NSString*)defaultName",
                     "- (nullable id)objectForKey:(nullable NSString*)defaultName")
        self.assert_differs("NSUserDefaults -objectForKey:: declared nullable nullable, but is nullable nonnull")

    def test_declaration_of_another_system(self):
        self.declare("Foundation/Foundation.h", "SDK_SINCE(12.0)", "SDK_SINCE(11.0)")
        self.assert_differs("NSProcessInfo -isLowPowerModeEnabled: declared since 11.0, but is there since 12.0")

    def test_declaration_that_nobody_looked_up(self):
        self.declare("AppKit/AppKit.h", "- (BOOL)openURL:(NSURL*)url;", "- (BOOL)openFile:(NSString*)path;")
        self.assert_differs("NSWorkspace -openFile:: declared, but not in the table")

    def test_fact_that_nobody_declares(self):
        self.declare("AppKit/AppKit.h", "- (BOOL)openURL:(NSURL*)url;", "")
        self.assert_differs("NSWorkspace -openURL:: in the table, but not declared")

    def test_callback_of_another_signature(self):
        self.plant("platform/macos/DispatchQueue.mm", ("std::size_t count, void* paths,", "int count, void* paths,"))
        self.assert_found("platform/macos/DispatchQueue.mm", "no matching function for call to 'FSEventStreamCreate'")

    def test_stream_that_may_not_have_been_made(self):
        self.plant("platform/macos/DispatchQueue.mm",
                   ("    if (system == nullptr) {\n      return nullptr;\n    }\n", ""))
        self.assert_found("platform/macos/DispatchQueue.mm", "Nullable pointer is passed to a callee that requires a non-null 1st parameter")

    def test_flag_with_another_number(self):
        self.plant("platform/macos/plain/EventStream.h", ("kernelDropped = 0x4;", "kernelDropped = 0x10;"))
        self.assert_found("platform/macos/DispatchQueue.mm", "static assertion failed")

    def test_watch_that_does_not_prove(self):
        self.plant("platform/macos/FSEventsWatch.mm", ("  void prove() override { watch_.prove(); }\n", ""))
        self.assert_found("platform/macos/FSEventsWatch.mm", "unimplemented pure virtual method 'prove' in 'FSEventsWatch'")

    # Planted in what keeps the application awake and in front

    def test_end_of_activity_without_one(self):
        self.plant("platform/macos/MacDesktop.mm", ("endActivity:token_]", "endActivity:nil]"))
        self.assert_found("platform/macos/MacDesktop.mm", "to a callee that requires a non-null argument")

    def test_activation_newer_than_oldest_system(self):
        header = self.sdk / "AppKit" / "AppKit.h"
        text = header.read_text(encoding="utf-8")
        right = "- (void)activateIgnoringOtherApps:(BOOL)flag;"
        self.assertIn(right, text)
        header.write_text(text.replace(right, f"{right}\n- (void)activate SDK_SINCE(14.0);"), encoding="utf-8")
        self.plant("platform/macos/MacDesktop.mm", (" activateIgnoringOtherApps:YES]", " activate]"))
        self.assert_found("platform/macos/MacDesktop.mm", "'activate' is only available on macOS 14.0 or newer")

    def test_desktop_that_does_not_say_whether_it_watches(self):
        self.plant("platform/Desktop.h", ("virtual void setWatching(bool isWatching) = 0;",
                                          "virtual void setWatching(int folders) = 0;"))
        self.assert_found("platform/macos/MacDesktop.mm", "setWatching")


if __name__ == "__main__":
    unittest.main(verbosity=0)
