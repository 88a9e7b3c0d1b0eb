// Starts and stops the reads that the refresh state machine decides on.
#pragma once

#include "app/refresh/refreshstate.h"

#include <QObject>
#include <QTimer>

#include <deque>

namespace ellwynd {

/// The reads that the scheduler starts and stops. Each `open…`, `read…` and `start…` must report
/// its result to the scheduler as one event, immediately or later, unless it is stopped first.
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

/// Holds the state of all reads, applies events to it and calls the jobs for the resulting actions.
/// Events sent from within a job are handled after the current actions. Used on the main thread.
class RefreshScheduler : public QObject {
    Q_OBJECT

  public:
    /// @param jobs must outlive this object.
    explicit RefreshScheduler(RefreshJobs &jobs, ElapsedClock now = elapsedNow);

    void send(const refresh::Event &event);
    void send(refresh::Event::Kind kind) { send(refresh::Event{.kind = kind}); }

    [[nodiscard]] const refresh::State &state() const { return current; }
    /// Whether a full refresh was requested whose course list has not been read yet.
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
