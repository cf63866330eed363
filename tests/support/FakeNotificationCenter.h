#pragma once

#include "platform/NotificationCenter.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cirrovane::test {

/// A notification centre that answers nothing before the test lets it.
class FakeNotificationCenter final : public NotificationCenter {
 public:
  NotificationAuthorization authorization = NotificationAuthorization::authorized;
  /// What the user says when asked.
  NotificationAuthorization usersAnswer = NotificationAuthorization::authorized;

  /// Of the page of the system's settings.
  std::optional<std::string> address;

  void readAuthorization(std::function<void(NotificationAuthorization)> then) override {
    calls_.emplace_back("read authorization");
    answers_.emplace_back([this, then = std::move(then)] { then(authorization); });
  }
  void requestAuthorization(std::function<void()> then) override {
    calls_.emplace_back("request authorization");
    answers_.emplace_back([this, then = std::move(then)] {
      authorization = usersAnswer;
      then();
    });
  }
  void add(const Notification& notification, std::function<void()> then) override {
    calls_.emplace_back("add");
    posted_.push_back(notification);
    answers_.push_back(std::move(then));
  }

  std::optional<std::string> settingsAddress() const override { return address; }

  /// Gives the oldest answer that is due; false when none is.
  bool answerOne() {
    if (answers_.empty()) {
      return false;
    }
    const std::function<void()> answer = std::move(answers_.front());
    answers_.pop_front();
    answer();
    return true;
  }
  void answerAll() {
    while (answerOne()) {
    }
  }

  /// What it was asked for, in order.
  const std::vector<std::string>& calls() const { return calls_; }
  const std::vector<Notification>& posted() const { return posted_; }

 private:
  std::deque<std::function<void()>> answers_;
  std::vector<std::string> calls_;
  std::vector<Notification> posted_;
};

}  // namespace cirrovane::test
