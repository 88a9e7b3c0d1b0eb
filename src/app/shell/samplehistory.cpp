#include "app/shell/samplehistory.h"

#include "base/calendar.h"

#include <array>
#include <string_view>

namespace ellwynd {

namespace {

/// The visits of the invented teacher, in days before today.
constexpr std::array visits{13, 11, 9, 7, 4, 2, 1};

/// A student's level on each visit: R At Risk, C Concern, W Watch, "-" none, "." not on the roster.
struct StudentLevels {
    std::int64_t courseID;
    std::int64_t studentID;
    std::string_view levels;
};

constexpr StudentLevels students[] = {
    // In mid-term. Jordan slips, Theo is newly flagged, Marcus improves, and Ruben is no longer
    // flagged.
    {900101, 5001, "-WWCCCC"},
    {900101, 5002, "CRRRRRR"},
    {900101, 5009, "WCCRRRR"},
    {900101, 5003, "CCCCCCC"},
    {900101, 5013, "WWWCCCC"},
    {900101, 5014, "-------"},
    {900101, 5004, "RRCCCCC"},
    {900101, 5015, "----WWW"},
    {900101, 5011, "--WWWWW"},
    {900101, 5012, "..WWWWW"},
    {900101, 5018, "WWWWWWW"},
    {900101, 5024, "WW-----"},
    {900101, 5007, "-------"},
    {900101, 5016, "-------"},
    {900101, 5005, "-------"},
    {900101, 5006, "-------"},
    // Ethan slips, Omar is newly flagged, and Lily is no longer flagged.
    {900102, 5110, "CCCRRRR"},
    {900102, 5101, "RRRRRRR"},
    {900102, 5107, "--WWWWW"},
    {900102, 5102, "CCCCWWW"},
    {900102, 5011, "---WWWW"},
    {900102, 5105, "-------"},
    {900102, 5115, ".WWWWWW"},
    {900102, 5106, "WWWWWWW"},
    {900102, 5103, "-------"},
    {900102, 5108, "W------"},
    {900102, 5109, "-------"},
    {900102, 5113, "-------"},
    {900102, 5006, "-------"},
    // A term that has ended changes little.
    {900201, 5201, "RRRRRRR"},
    {900201, 5214, "CCRRRRR"},
    {900201, 5207, "CCCCCCC"},
    {900201, 5203, "WWCCCCC"},
    {900201, 5205, "WWWWWWW"},
    {900201, 5211, "WWWWWWW"},
    {900201, 5213, "CCCCCCC"},
    {900201, 5202, "-------"},
    {900201, 5209, "-------"},
    {900201, 5215, "-------"},
    {900201, 5216, "-------"},
};

std::optional<RiskLevel> level(char letter) {
    switch (letter) {
    case 'R':
        return RiskLevel::atRisk;
    case 'C':
        return RiskLevel::concern;
    case 'W':
        return RiskLevel::watch;
    default:
        return std::nullopt;
    }
}

} // namespace

std::vector<RosterSnapshot> sampleHistory(Date now) {
    std::vector<RosterSnapshot> entries;
    for (std::size_t visit = 0; visit < visits.size(); ++visit) {
        const Date date = calendar::daysBefore(now, visits[visit]);
        for (const StudentLevels &student : students) {
            const char letter = student.levels[visit];
            if (letter == '.')
                continue;
            entries.push_back(
                {.courseID = student.courseID,
                 .studentID = student.studentID,
                 .recordedAt = date,
                 .level = std::string(levelName(level(letter))),
                 .missingCount = severity(level(letter))});
        }
    }
    return entries;
}

std::vector<ContactRecord> sampleContacts(Date now) {
    return {
        // Awaiting follow-up: worse since.
        {900101, 5001, calendar::daysBefore(now, 9)},
        {900101, 5003, calendar::daysBefore(now, 3)},
        // Better since.
        {900101, 5004, calendar::daysBefore(now, 11)},
        // Awaiting follow-up: no change.
        {900102, 5101, calendar::daysBefore(now, 8)},
    };
}

} // namespace ellwynd
