#include "tests/platform_qt/URLReceiver.h"

#include <QDesktopServices>

namespace cirrovane::test {

URLReceiver::URLReceiver(const QString& scheme) : scheme_(scheme) {
  QDesktopServices::setUrlHandler(scheme, this, "receive");
}

URLReceiver::~URLReceiver() {
  QDesktopServices::unsetUrlHandler(scheme_);
}

void URLReceiver::receive(const QUrl& url) {
  received_.push_back(url.toEncoded().toStdString());
}

}  // namespace cirrovane::test
