// Carries out what the refresh state decides.
#pragma once

#include "app/refresh/refreshstate.h"

#include <QObject>
#include <QTimer>

#include <deque>

namespace ellwynd {

/// The reads that the scheduler starts and stops. Each `open…`, `read…` and `start…` is answered by
/// one event later, or at once, unless it is stopped first.
class RefreshJobs {
  public:
    RefreshJobs() = default;
    RefreshJobs(const RefreshJobs &) = delete;
    RefreshJobs &operator=(const RefreshJobs &) = delete;
    virtual ~RefreshJobs() = default;

    virtual void openConnection(refresh::Initiative initiative) = 0;
    virtual void readList() = 0;
    virtual void readRoster() = 0;
    virtual void startPass() = 0;
    virtual void stopList() = 0;
    virtual void stopRoster() = 0;
    virtual void stopPass() = 0;
};

/// Keeps the state of all reads, feeds it with events and has the jobs do what follows. Events that
/// a job sends while it is started are handled after it. Lives on the main thread.
class RefreshScheduler : public QObject {
    Q_OBJECT

  public:
    /// @param jobs must outlive this object.
    explicit RefreshScheduler(RefreshJobs &jobs, ElapsedClock now = elapsedNow);

    void send(const refresh::Event &event);
    void send(refresh::Event::Kind kind) { send(refresh::Event{.kind = kind}); }

    [[nodiscard]] const refresh::State &state() const { return current; }
    /// A full refresh, from its request to the end of its course list.
    [[nodiscard]] bool isRefreshing() const { return current.list.wanted || current.list.running; }

  Q_SIGNALS:
    void stateDidChange();

  private:
    void carryOut(refresh::Action action);

    RefreshJobs &jobs;
    ElapsedClock now;
    refresh::State current;
    std::deque<refresh::Event> events;
    bool sending = false;
    QTimer deadline;
};

} // namespace ellwynd
