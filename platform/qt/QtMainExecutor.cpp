#include "platform/qt/QtMainExecutor.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <deque>
#include <mutex>
#include <utility>

namespace cirrovane {

/// The tasks that wait, and the object whose events say that one does.
class QtMainExecutor::Queue {
 public:
  void open(QObject* receiver) { receiver_ = receiver; }

  void post(std::function<void()> task) {
    const std::lock_guard lock(mutex_);
    if (receiver_ != nullptr) {
      tasks_.push_back(std::move(task));
      QCoreApplication::postEvent(receiver_, std::make_unique<QEvent>(QEvent::User).release());
    }
  }

  /// The task that has waited longest; empty once the queue is closed.
  std::function<void()> take() {
    const std::lock_guard lock(mutex_);
    if (tasks_.empty()) {
      return nullptr;
    }
    std::function<void()> task = std::move(tasks_.front());
    tasks_.pop_front();
    return task;
  }

  /// Drops the tasks that wait, and all that come. Answers the receiver that the queue had.
  QObject* close() {
    // What a task holds may post when it goes, so the tasks go after the lock.
    std::deque<std::function<void()>> dropped;
    const std::lock_guard lock(mutex_);
    dropped.swap(tasks_);
    return std::exchange(receiver_, nullptr);
  }

 private:
  std::mutex mutex_;
  std::deque<std::function<void()>> tasks_;
  QObject* receiver_ = nullptr;
};

/// Runs one task for each event. A child of the application object, with which it goes.
class QtMainExecutor::Receiver final : public QObject {
 public:
  Receiver(std::shared_ptr<Queue> queue, QCoreApplication* application)
      : QObject(application), queue_(std::move(queue)) {
    // While the application's object goes, other threads must no longer post to its event loop.
    QObject::connect(application, &QCoreApplication::aboutToQuit, this, [this] { queue_->close(); });
  }
  ~Receiver() override { queue_->close(); }

  Receiver(const Receiver&) = delete;
  Receiver& operator=(const Receiver&) = delete;

  bool event(QEvent* event) override {
    if (event->type() != QEvent::User) {
      return QObject::event(event);
    }
    // The task may be the one that ends this object.
    if (const auto task = queue_->take()) {
      task();
    }
    return true;
  }

 private:
  std::shared_ptr<Queue> queue_;
};

QtMainExecutor::QtMainExecutor() : queue_(std::make_shared<Queue>()) {
  if (QCoreApplication* application = QCoreApplication::instance()) {
    queue_->open(std::make_unique<Receiver>(queue_, application).release());
  }
}

QtMainExecutor::~QtMainExecutor() {
  const std::unique_ptr<QObject> receiver(queue_->close());
}

void QtMainExecutor::post(std::function<void()> task) {
  queue_->post(std::move(task));
}

}  // namespace cirrovane
