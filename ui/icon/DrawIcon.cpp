#include "ui/icon/ApplicationIcon.h"

#include <QByteArray>
#include <cstdio>

namespace {

constexpr int kWrongUsage = 2;
constexpr int kCouldNot = 3;

}  // namespace

/// Draws the application's icon where it is built: draw_icon SIDE MARGIN FILE.png
int main(int argumentCount, char** arguments) {
  bool isSide = false;
  bool isMargin = false;
  const int side = argumentCount == 4 ? QByteArray(arguments[1]).toInt(&isSide) : 0;
  const double margin = argumentCount == 4 ? QByteArray(arguments[2]).toDouble(&isMargin) : 0;
  if (!isSide || !isMargin || side <= 0 || margin < 0 || margin >= 0.5) {
    std::fputs("usage: draw_icon SIDE MARGIN FILE.png\n", stderr);
    return kWrongUsage;
  }
  if (!cirrovane::applicationImage(side, margin).save(QString::fromLocal8Bit(arguments[3]), "PNG")) {
    std::fprintf(stderr, "draw_icon: Could not write %s.\n", arguments[3]);
    return kCouldNot;
  }
  return 0;
}
