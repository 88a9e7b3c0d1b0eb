#include "risk/signals.h"

namespace ellwynd {

std::string_view signalName(Signal signal) {
    switch (signal) {
    case Signal::missing:
        return "Missing work";
    case Signal::pastDue:
        return "Past due";
    case Signal::time:
        return "Time in course";
    case Signal::grade:
        return "Current score";
    case Signal::inactivity:
        break;
    }
    return "Inactivity";
}

double SignalShares::sum() const {
    double sum = 0;
    for (const std::optional<double> &share : shares)
        sum += share.value_or(0);
    return sum;
}

std::string_view floorName(ScoreFloor floor) {
    switch (floor) {
    case ScoreFloor::failingGrade:
        return "failing grade";
    case ScoreFloor::mostWorkMissing:
        return "most work missing";
    case ScoreFloor::belowPassing:
        break;
    }
    return "below passing";
}

} // namespace ellwynd
