// A student's recorded levels over the term.
#pragma once

#include "memory/rosterhistory.h"

namespace ellwynd {

struct TermTrend {
    struct Point {
        /// The start of the recorded day.
        Date date;
        std::optional<RiskLevel> level;

        bool operator==(const Point &) const = default;
    };

    /// At least two, in order of date.
    std::vector<Point> points;

    bool operator==(const TermTrend &) const = default;
};

/// The days up to that of `now`; absent with fewer than two days of known levels.
[[nodiscard]] std::optional<TermTrend>
termTrend(const RosterHistory &history, std::int64_t courseID, std::int64_t studentID, Date now);

/// "Seen on 6 days between Sep 3 and Sep 18 — started Watch, now Concern, worst At Risk."
[[nodiscard]] std::string termStory(const TermTrend &trend);

/// Whether a chart joins two consecutive points: only if they are at most 14 days of 86,400 seconds
/// apart.
[[nodiscard]] bool isJoined(const TermTrend::Point &earlier, const TermTrend::Point &later);

} // namespace ellwynd
