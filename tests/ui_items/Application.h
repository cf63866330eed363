#pragma once

#include <QGuiApplication>

#include <gtest/gtest.h>

namespace cirrovane::test {

/// The one application of the test program, without a screen. Made by the first test that needs it.
inline void needApplication() {
  static int count = 1;
  static char name[] = "ui_items_tests";
  static char* arguments[] = {name, nullptr};
  if (QCoreApplication::instance() == nullptr) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    // Lives as long as the process: what Qt tears down at the end of main() must find it.
    static const auto* const application = new QGuiApplication(count, arguments);
    static_cast<void>(application);
  }
}

/// A test of what needs an application.
class ApplicationTest : public testing::Test {
 protected:
  ApplicationTest() { needApplication(); }
};

}  // namespace cirrovane::test
