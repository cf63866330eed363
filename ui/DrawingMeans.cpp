#include "ui/DrawingMeans.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QtGlobal>
#include <algorithm>
#include <array>
#include <cstdio>
#include <system_error>

namespace cirrovane {
namespace {

// Libraries below print too, before it and after it.
constexpr std::string_view kAnswer = "cirrovane draws with: ";

}  // namespace

bool isPainterWanted(const DrawingMeans& means) {
  if (means.isChosen) {
    return false;
  }
  if (!means.hasDevice) {
    return true;
  }
  const auto name = means.rendererName();
  return !name || isSoftwareRenderer(*name);
}

bool isSoftwareRenderer(std::string_view name) {
  constexpr std::array<std::string_view, 5> kNames = {"llvmpipe", "softpipe", "swrast", "Software Rasterizer",
                                                      "SwiftShader"};
  return std::ranges::any_of(kNames, [&](std::string_view part) { return name.find(part) != std::string_view::npos; });
}

bool isDrawingChosen() {
  constexpr std::array<const char*, 3> kVariables = {"QT_QUICK_BACKEND", "QMLSCENE_DEVICE", "QSG_RHI_BACKEND"};
  return std::ranges::any_of(kVariables, [](const char* name) { return !qEnvironmentVariableIsEmpty(name); });
}

bool hasGraphicsDevice(const std::filesystem::path& devices) {
  std::error_code error;
  for (const char* name : {"nvidiactl", "dxg", "mali0", "kgsl-3d0"}) {
    if (std::filesystem::exists(devices / name, error)) {
      return true;
    }
  }
  // The kernel's own drivers.
  const std::filesystem::directory_iterator folder(devices / "dri", error);
  return std::any_of(begin(folder), end(folder), [](const std::filesystem::directory_entry& entry) {
    const std::string name = entry.path().filename().native();
    return name.starts_with("render") || name.starts_with("card");
  });
}

int tellRendererName() {
  // A session need not bring this process back.
  QCoreApplication::setAttribute(Qt::AA_DisableSessionManager);
  int count = 1;
  std::string name = "cirrovane";
  std::array<char*, 2> arguments = {name.data(), nullptr};
  const QGuiApplication application(count, arguments.data());
  QOpenGLContext context;
  QOffscreenSurface surface;
  surface.create();
  if (!context.create() || !context.makeCurrent(&surface)) {
    return 1;
  }
  const auto* told = reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
  std::printf("%s%s\n", kAnswer.data(), told != nullptr ? told : "");
  std::fflush(stdout);
  return told != nullptr ? 0 : 1;
}

std::optional<std::string> toldRendererName(std::string_view printed) {
  const std::size_t start = printed.find(kAnswer);
  if (start == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view rest = printed.substr(start + kAnswer.size());
  return std::string(rest.substr(0, rest.find('\n')));
}

}  // namespace cirrovane
