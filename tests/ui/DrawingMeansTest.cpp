#include "ui/DrawingMeans.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

DrawingMeans meansWith(const std::optional<std::string>& renderer) {
  return {.isChosen = false, .hasDevice = true, .rendererName = [renderer] { return renderer; }};
}

DrawingMeans meansThatAskNobody() {
  DrawingMeans means;
  means.rendererName = [] {
    ADD_FAILURE() << "OpenGL was asked";
    return std::nullopt;
  };
  return means;
}

class GraphicsDevices : public testing::Test {
 protected:
  GraphicsDevices() { std::filesystem::create_directories(folder_); }
  ~GraphicsDevices() override { std::filesystem::remove_all(folder_); }

  void make(const std::string& name) {
    std::filesystem::create_directories((folder_ / name).parent_path());
    std::ofstream(folder_ / name).put('\n');
  }

  std::filesystem::path folder_ =
      std::filesystem::path(CIRROVANE_TEST_DIR) / testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST(DrawingMeans, graphicsCard_isLeftToTheToolkit) {
  for (const char* name : {"Mesa Intel(R) UHD Graphics 620 (KBL GT2)", "AMD Radeon RX 580 (polaris10, LLVM 15.0.6)",
                           "NVIDIA GeForce RTX 3060/PCIe/SSE2", "virgl (Mesa Intel)", "D3D12 (Intel)"}) {
    EXPECT_FALSE(isPainterWanted(meansWith(name))) << name;
  }
}

TEST(DrawingMeans, openGLInSoftware_isForThePainter) {
  for (const char* name : {"llvmpipe (LLVM 15.0.6, 256 bits)", "softpipe", "Software Rasterizer", "Mesa X11 swrast",
                           "Google SwiftShader"}) {
    EXPECT_TRUE(isPainterWanted(meansWith(name))) << name;
  }
}

TEST(DrawingMeans, noOpenGL_isForThePainter) {
  EXPECT_TRUE(isPainterWanted(meansWith(std::nullopt)));
}

TEST(DrawingMeans, noDevice_isForThePainterWithoutAsking) {
  EXPECT_TRUE(isPainterWanted(meansThatAskNobody()));
}

TEST(DrawingMeans, usersChoice_standsWithoutAsking) {
  DrawingMeans means = meansThatAskNobody();
  means.isChosen = true;
  EXPECT_FALSE(isPainterWanted(means));
  means.hasDevice = true;
  EXPECT_FALSE(isPainterWanted(means));
}

TEST(DrawingMeans, environment_eitherVariable_isAChoice) {
  // What the tests themselves draw with.
  const QByteArray before = qgetenv("QT_QUICK_BACKEND");
  qunsetenv("QT_QUICK_BACKEND");
  EXPECT_FALSE(isDrawingChosen());
  for (const char* name : {"QT_QUICK_BACKEND", "QSG_RHI_BACKEND"}) {
    qputenv(name, "");
    EXPECT_FALSE(isDrawingChosen()) << name;
    qputenv(name, "opengl");
    EXPECT_TRUE(isDrawingChosen()) << name;
    qunsetenv(name);
  }
  if (!before.isEmpty()) {
    qputenv("QT_QUICK_BACKEND", before);
  }
}

TEST_F(GraphicsDevices, none_hasNone) {
  EXPECT_FALSE(hasGraphicsDevice(folder_));
  EXPECT_FALSE(hasGraphicsDevice(folder_ / "missing"));
  make("null");
  make("dri/by-path");
  EXPECT_FALSE(hasGraphicsDevice(folder_));
}

TEST_F(GraphicsDevices, ofTheKernel_hasOne) {
  make("dri/renderD128");
  EXPECT_TRUE(hasGraphicsDevice(folder_));
}

TEST_F(GraphicsDevices, ofAMaker_hasOne) {
  make("nvidiactl");
  EXPECT_TRUE(hasGraphicsDevice(folder_));
}

TEST(DrawingMeans, told_isFoundAmongWhatLibrariesPrint) {
  EXPECT_EQ(toldRendererName("libGL: swrast\ncirrovane draws with: Intel UHD\nbye\n"), "Intel UHD");
  EXPECT_EQ(toldRendererName("libGL error: failed to load driver: swrast\n"), std::nullopt);
  EXPECT_EQ(toldRendererName(""), std::nullopt);
}

}  // namespace
}  // namespace cirrovane::test
