// Short constructors of scored rows and history entries.
#pragma once

#include "memory/historyfile.h"
#include "memory/rosterhistory.h"

namespace ellwynd::test {

/// A row of course 7 with the level of that name; no level for "OK" and "".
inline RiskRow row(std::int64_t id, std::string_view level, std::int64_t missing = 0) {
    RiskRow result{
        .id = id, .name = "Student " + std::to_string(id), .missingCount = missing, .courseID = 7};
    for (const RiskLevel candidate : allRiskLevels) {
        if (levelName(candidate) == level)
            result.level = candidate;
    }
    return result;
}

inline RosterSnapshot entry(
    std::int64_t course, std::int64_t student, Date date, std::string level,
    std::int64_t missing = 0) {
    return {course, student, date, std::move(level), missing};
}

/// A history file with these entries, and the entries of such a file.
inline std::string historyText(const std::vector<RosterSnapshot> &entries) {
    return encodeHistory(visitsOf(entries));
}
inline std::vector<RosterSnapshot> historyEntries(std::string_view text) {
    return snapshotsOf(decodeHistory(text));
}

} // namespace ellwynd::test
