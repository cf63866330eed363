#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <string>
#include <vector>

namespace cirrovane::test {

/// Stands for the programs that the desktop opens addresses of one kind with.
class URLReceiver final : public QObject {
  Q_OBJECT

 public:
  explicit URLReceiver(const QString& scheme);
  ~URLReceiver() override;

  URLReceiver(const URLReceiver&) = delete;
  URLReceiver& operator=(const URLReceiver&) = delete;

  const std::vector<std::string>& received() const { return received_; }

 private:
  Q_SLOT void receive(const QUrl& url);

  QString scheme_;
  std::vector<std::string> received_;
};

}  // namespace cirrovane::test
