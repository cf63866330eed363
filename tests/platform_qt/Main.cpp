#include <QApplication>
#include <QByteArray>
#include <QTemporaryDir>

#include <gmock/gmock.h>

/// Runs the tests under an application without a screen, which finds nothing of the user's desktop or settings.
int main(int argc, char** argv) {
  const QTemporaryDir folder;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
  qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
  qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
  testing::InitGoogleMock(&argc, argv);
  // Never deleted here: one of the tests is about what happens when it is.
  new QApplication(argc, argv);
  return RUN_ALL_TESTS();
}
