#pragma once

#include "base/Published.h"
#include "ui/viewmodels/PageContext.h"

#include <QObject>
#include <QtQmlIntegration>
#include <string>
#include <vector>

namespace cirrovane {

/// What a page shows. The page makes it and takes it along. Main thread only. Heirs name it with its namespace, since
/// the registration of types finds it by no other name.
class PageViewModel : public QObject {
  Q_OBJECT
  QML_ANONYMOUS
  Q_PROPERTY(cirrovane::PageContext* context READ context WRITE setContext NOTIFY contextChanged REQUIRED)
  Q_PROPERTY(bool isScanning READ isScanning NOTIFY changed)

 public:
  PageContext* context() const { return context_; }
  /// To be called once, with a context.
  void setContext(PageContext* context);

  bool isScanning() const;

  /// Asks for a refresh; nothing happens while one is under way.
  Q_INVOKABLE void rescan();

 signals:
  void contextChanged();
  /// The page's properties may have changed.
  void changed();

 protected:
  using QObject::QObject;

  /// The results, to read.
  const DashboardViewModel& dashboard() const { return context_->dashboard(); }

  /// Shows an item in the file manager, if it exists.
  void reveal(const std::string& path);

  /// Calls follow() for each value that the page shows.
  virtual void begin() = 0;
  /// Takes the values over; changed() comes after it.
  virtual void update() {}

  /// Updates the page after a change of the value, once in a turn of the event loop.
  template <class Value>
  void follow(const Published<Value>& published) {
    subscriptions_.push_back(published.afterChange([this](const Value&) { updateSoon(); }));
  }
  /// Updates the page at once, for what the user has just done.
  void updateNow();

 private:
  void updateSoon();

  PageContext* context_ = nullptr;
  bool isUpdateDue_ = false;
  std::vector<Subscription> subscriptions_;
};

}  // namespace cirrovane
