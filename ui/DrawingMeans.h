#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// What decides how the windows are drawn.
struct DrawingMeans {
  /// Whether the user has named a way to draw.
  bool isChosen = false;
  /// Whether the machine has a device that a driver of OpenGL could draw with.
  bool hasDevice = false;
  /// The name of what OpenGL draws with; absent where there is no OpenGL. It takes a while.
  std::function<std::optional<std::string>()> rendererName;
};

/// Whether the toolkit's own painter is to draw. OpenGL without a graphics card is slower than that, and keeps in this
/// process's memory what else a card would hold.
bool isPainterWanted(const DrawingMeans& means);

/// Whether OpenGL computes its pictures itself when it calls what it draws with by this name.
bool isSoftwareRenderer(std::string_view name);

/// Whether the user's environment names a way to draw.
bool isDrawingChosen();

/// Whether the folder of devices has one that a driver of OpenGL could draw with.
bool hasGraphicsDevice(const std::filesystem::path& devices);

/// Has OpenGL say what it draws with, on standard output: for a process of its own, since the answer loads a compiler,
/// whose memory stays. Returns the status to end with.
int tellRendererName();

/// The answer of `tellRendererName` among all that its process printed; absent when there is none.
std::optional<std::string> toldRendererName(std::string_view printed);

}  // namespace cirrovane
