#include "ui/viewmodels/PageViewModel.h"

#include <QMetaObject>

namespace cirrovane {

void PageViewModel::setContext(PageContext* context) {
  if (context == nullptr || context_ != nullptr) {
    return;
  }
  context_ = context;
  emit contextChanged();
  follow(dashboard().publishedIsScanning());
  begin();
  updateNow();
}

bool PageViewModel::isScanning() const {
  return context_ != nullptr && dashboard().isScanning();
}

void PageViewModel::rescan() {
  if (context_ != nullptr) {
    context_->dashboard(For<PageViewModel>()).refresh();
  }
}

void PageViewModel::reveal(const std::string& path) {
  context_->dashboard(For<PageViewModel>()).revealInFinder(path);
}

void PageViewModel::updateNow() {
  isUpdateDue_ = false;
  update();
  emit changed();
}

void PageViewModel::updateSoon() {
  if (isUpdateDue_) {
    return;
  }
  isUpdateDue_ = true;
  // Queued, since several values may change in one turn.
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (isUpdateDue_) {
          updateNow();
        }
      },
      Qt::QueuedConnection);
}

}  // namespace cirrovane
