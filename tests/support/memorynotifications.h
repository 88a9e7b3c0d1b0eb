// The system's notices in memory, answered when a test says so.
#pragma once

#include "platform/notifications/usernotifications.h"

#include <utility>
#include <vector>

namespace ellwynd::test {

class MemoryNotifications final : public UserNotifications {
  public:
    AuthorizationStatus status = AuthorizationStatus::authorized;
    std::vector<UserNotice> posted;
    /// The system's message, with which posting fails while it is not empty.
    std::string failure;
    /// While set, questions wait in `questions`.
    bool slow = false;
    std::vector<StatusAnswer> questions;
    ClickObserver observer;

    void authorizationStatus(StatusAnswer answer) override {
        if (slow)
            questions.push_back(std::move(answer));
        else
            answer(status);
    }

    /// Answers what waits.
    void answer() {
        for (const StatusAnswer &question : std::exchange(questions, {}))
            question(status);
    }

    void post(const UserNotice &notice, Failure failed) override {
        if (failure.empty())
            posted.push_back(notice);
        else
            failed(failure);
    }

    std::shared_ptr<void> observeClicks(ClickObserver clicked) override {
        observer = std::move(clicked);
        return {this, [](MemoryNotifications *self) { self->observer = nullptr; }};
    }
};

} // namespace ellwynd::test
