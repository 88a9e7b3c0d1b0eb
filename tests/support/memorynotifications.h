// A fake of the system's notifications, in memory.
#pragma once

#include "platform/notifications/usernotifications.h"

#include <utility>
#include <vector>

namespace ellwynd::test {

class MemoryNotifications final : public UserNotifications {
  public:
    AuthorizationStatus status = AuthorizationStatus::authorized;
    std::vector<UserNotice> posted;
    /// The error message with which posting fails; empty for success.
    std::string failure;
    /// While set, status queries wait in `pendingQueries` until `answer`.
    bool slow = false;
    std::vector<StatusAnswer> pendingQueries;
    ClickObserver observer;

    void authorizationStatus(StatusAnswer answer) override {
        if (slow)
            pendingQueries.push_back(std::move(answer));
        else
            answer(status);
    }

    /// Answers the pending queries.
    void answer() {
        for (const StatusAnswer &query : std::exchange(pendingQueries, {}))
            query(status);
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
