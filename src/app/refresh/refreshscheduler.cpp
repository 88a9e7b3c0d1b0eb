#include "app/refresh/refreshscheduler.h"

#include <QPointer>

namespace ellwynd {

using refresh::Action;
using refresh::Event;
using refresh::Initiative;

RefreshScheduler::RefreshScheduler(RefreshJobs &jobs, ElapsedClock now) : jobs(jobs), now(now) {
    deadline.setSingleShot(true);
    deadline.setTimerType(Qt::PreciseTimer);
    connect(&deadline, &QTimer::timeout, this, [this] { send(Event::Kind::deadline); });
}

void RefreshScheduler::send(const Event &event) {
    events.push_back(event);
    if (sending)
        return;
    sending = true;
    const QPointer<RefreshScheduler> self(this);
    while (self && !events.empty()) {
        const Event next = events.front();
        events.pop_front();
        refresh::Step step = refresh::step(std::move(current), next, now());
        current = std::move(step.state);
        for (const Action action : step.actions) {
            carryOut(action);
            if (!self)
                return;
        }
    }
    sending = false;
    const auto at = refresh::nextDeadline(current, now());
    if (at)
        deadline.start(std::chrono::ceil<std::chrono::milliseconds>(*at - now()));
    else
        deadline.stop();
    Q_EMIT stateDidChange();
}

void RefreshScheduler::carryOut(Action action) {
    switch (action) {
    case Action::openConnection:
        return jobs.openConnection(Initiative::teacher);
    case Action::openConnectionQuietly:
        return jobs.openConnection(Initiative::program);
    case Action::readList:
        return jobs.readList();
    case Action::readRoster:
        return jobs.readRoster();
    case Action::startPass:
        return jobs.startPass();
    case Action::stopList:
        return jobs.stopList();
    case Action::stopRoster:
        return jobs.stopRoster();
    case Action::stopPass:
        return jobs.stopPass();
    }
}

} // namespace ellwynd
