// The recorded levels of a course's students over the term.
#pragma once

#include "app/shell/stores.h"
#include "memory/recordedlevel.h"
#include "risk/riskrow.h"

namespace ellwynd {

/// A grid of students and recorded days, and what came of the teacher's messages.
struct LookBack {
    struct Row {
        std::int64_t studentID = 0;
        /// "Student 42" for one who is no longer on the roster.
        std::string name;
        /// One for each day; unknown where the student was not recorded.
        std::vector<RecordedLevel> levels;

        bool operator==(const Row &) const = default;
    };

    /// The starts of the recorded days, earliest first.
    std::vector<Date> days;
    /// The students of the roster in its order, then the others by their last level.
    std::vector<Row> rows;
    /// How many students were written to.
    std::int64_t wroteTo = 0;
    /// Of these, how many had a better level within two weeks.
    std::int64_t better = 0;

    bool operator==(const LookBack &) const = default;
};

/// @param roster the course's rows as scored now, worst first.
[[nodiscard]] LookBack lookBack(
    std::int64_t courseID, const SharedList<RiskRow> &roster, const RosterHistory &history,
    const ContactLog &contacts);

/// "11 written to, 6 better within two weeks".
[[nodiscard]] std::string outreachSummary(const LookBack &look, bool remembersContacts);

/// One letter for a level: "R" for At Risk, "C", "W", "–" for none; empty if it is unknown.
[[nodiscard]] std::string_view levelLetter(const RecordedLevel &level);

} // namespace ellwynd
