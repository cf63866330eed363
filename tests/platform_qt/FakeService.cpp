#include "tests/platform_qt/FakeService.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace cirrovane::test {

FakeService::FakeService(const QDBusConnection& bus, const QString& name, Answer answer)
    : bus_(bus), name_(name), answer_(std::move(answer)) {
  if (!bus_.registerVirtualObject(path(), this) || !bus_.registerService(name_)) {
    throw std::runtime_error("The fake service could not be registered.");
  }
}

FakeService::~FakeService() {
  bus_.unregisterService(name_);
  bus_.unregisterObject(path());
}

std::vector<QDBusMessage> FakeService::calls(const QString& method) const {
  std::vector<QDBusMessage> found;
  std::ranges::copy_if(calls_, std::back_inserter(found),
                       [&method](const QDBusMessage& call) { return call.member() == method; });
  return found;
}

void FakeService::emitSignal(const QString& name, const QVariantList& arguments) {
  QDBusMessage signal = QDBusMessage::createSignal(path(), name_, name);
  signal.setArguments(arguments);
  bus_.send(signal);
}

QString FakeService::introspect(const QString&) const {
  return {};
}

bool FakeService::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (message.interface() != name_) {
    return false;
  }
  calls_.push_back(message);
  return connection.send(message.createReply(answer_(message)));
}

QString FakeService::path() const {
  return '/' + QString(name_).replace('.', '/');
}

}  // namespace cirrovane::test
