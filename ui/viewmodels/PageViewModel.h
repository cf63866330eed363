#pragma once

#include "base/Published.h"
#include "ui/viewmodels/PageContext.h"

#include <QObject>
#include <QtQmlIntegration>
#include <string>
#include <vector>

namespace cirrovane {

/// What a page shows, made by the page itself and gone with it. Main thread only. Heirs name it with its namespace, by
/// which alone the registration of types finds it.
class PageViewModel : public QObject {
  Q_OBJECT
  QML_ANONYMOUS
  Q_PROPERTY(cirrovane::PageContext* context READ context WRITE setContext NOTIFY contextChanged REQUIRED)
  Q_PROPERTY(bool isScanning READ isScanning NOTIFY changed)

 public:
  PageContext* context() const { return context_; }
  /// Once only, with a context that is not nullptr.
  void setContext(PageContext* context);

  bool isScanning() const;

  /// Asks for a refresh; nothing happens while one is under way.
  Q_INVOKABLE void rescan();

 signals:
  void contextChanged();
  /// What the page shows may be another from now on.
  void changed();

 protected:
  using QObject::QObject;

  /// The results, to be looked at only.
  const DashboardViewModel& dashboard() const { return context_->dashboard(); }

  /// Shows an item in the file manager, if it exists.
  void reveal(const std::string& path);

  /// Follows with follow() whatever the page shows.
  virtual void begin() = 0;
  /// Takes over how things stand; changed() comes after it.
  virtual void update() {}

  /// Updates the page after each change of the value, once for all changes of one turn of the event loop.
  template <class Value>
  void follow(const Published<Value>& published) {
    subscriptions_.push_back(published.afterChange([this](const Value&) { updateSoon(); }));
  }
  /// The same at once, for what the user has just done.
  void updateNow();

 private:
  void updateSoon();

  PageContext* context_ = nullptr;
  bool isUpdateDue_ = false;
  std::vector<Subscription> subscriptions_;
};

}  // namespace cirrovane
