#pragma once

#include <QIcon>
#include <QImage>

namespace cirrovane {

/// The application's own drawing, in a square with so many pixels to a side. The margin is what is left free on each
/// side beyond the drawing's own, as a part of the side. Null when the side is not positive.
QImage applicationImage(int side, double margin = 0);

/// The same as an icon, in the sizes that desktops ask for.
QIcon applicationIcon();

}  // namespace cirrovane
