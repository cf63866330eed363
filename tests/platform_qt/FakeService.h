#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <functional>
#include <vector>

namespace cirrovane::test {

/// A program of the desktop that keeps the calls that it gets. It runs on the test's own thread, so that code under
/// test that waited for it would wait for ever.
class FakeService final : public QDBusVirtualObject {
 public:
  using Answer = std::function<QVariantList(const QDBusMessage&)>;

  /// The service of a name with one object and one interface, called like the service.
  FakeService(const QDBusConnection& bus, const QString& name, Answer answer);
  ~FakeService() override;

  FakeService(const FakeService&) = delete;
  FakeService& operator=(const FakeService&) = delete;

  /// The calls of one method.
  std::vector<QDBusMessage> calls(const QString& method) const;
  void emitSignal(const QString& name, const QVariantList& arguments);

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  QString path() const;

  QDBusConnection bus_;
  QString name_;
  Answer answer_;
  std::vector<QDBusMessage> calls_;
};

}  // namespace cirrovane::test
