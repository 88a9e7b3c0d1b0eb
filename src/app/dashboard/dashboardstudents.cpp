#include "app/dashboard/dashboardstudents.h"

#include "app/courses/courselabel.h"
#include "app/roster/rosterquery.h"
#include "app/roster/rostertexts.h"
#include "base/text.h"

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

namespace ellwynd {

namespace {

/// The smaller, the sooner the student needs the teacher.
int groupOf(const DashboardStudent &student) {
    if (belongs(student, DashboardChip::worse))
        return 0;
    if (belongs(student, DashboardChip::awaitingFollowUp))
        return 1;
    return student.row->level == RiskLevel::atRisk && !student.outcome ? 2 : 3;
}

/// The roster's chip of the same name; absent for "At Risk".
std::optional<RosterChip> rosterChip(DashboardChip chip) {
    switch (chip) {
    case DashboardChip::worse:
        return RosterChip::worse;
    case DashboardChip::notYetReached:
        return RosterChip::notYetReached;
    case DashboardChip::awaitingFollowUp:
        return RosterChip::awaitingFollowUp;
    case DashboardChip::atRisk:
        break;
    }
    return std::nullopt;
}

} // namespace

std::string_view chipName(DashboardChip chip) {
    const std::optional<RosterChip> same = rosterChip(chip);
    return same ? chipName(*same) : levelName(RiskLevel::atRisk);
}

bool belongs(const DashboardStudent &student, DashboardChip chip) {
    switch (chip) {
    case DashboardChip::worse:
        return student.change && isWorse(*student.change);
    case DashboardChip::notYetReached:
        return !student.outcome;
    case DashboardChip::awaitingFollowUp:
        return student.outcome && isAwaitingFollowUp(*student.outcome);
    case DashboardChip::atRisk:
        return student.row->level == RiskLevel::atRisk;
    }
    return false;
}

std::vector<DashboardStudent> flaggedStudents(
    const SharedCourse &course, const std::vector<RosterChange> &changes, const Stores &stores,
    Date now) {
    std::map<std::int64_t, const RosterChange *> changeOf;
    for (const RosterChange &change : changes)
        changeOf.emplace(change.studentID, &change);
    const std::string code = courseLabel(course->course).shortName();
    std::vector<DashboardStudent> students;
    for (const RiskRow &row : course->rows) {
        if (!row.level)
            continue;
        const auto change = changeOf.find(row.id);
        students.push_back(
            {.row = std::shared_ptr<const RiskRow>(course, &row),
             .courseCode = code,
             .change = change != changeOf.end() ? std::optional(*change->second) : std::nullopt,
             .outcome = lastOutcome(row, stores.contacts, stores.history, now)});
    }
    return students;
}

void sortByNeed(std::vector<DashboardStudent> &students) {
    struct Place {
        int group;
        double score;
        std::size_t index;
        auto operator<=>(const Place &) const = default;
    };
    std::vector<Place> places;
    places.reserve(students.size());
    for (std::size_t i = 0; i < students.size(); ++i)
        places.push_back({groupOf(students[i]), -students[i].row->score, i});
    std::ranges::sort(places, std::less{});
    std::vector<DashboardStudent> sorted;
    sorted.reserve(students.size());
    for (const Place &place : places)
        sorted.push_back(std::move(students[place.index]));
    students = std::move(sorted);
}

std::int64_t findOtherCourses(std::vector<DashboardStudent> &students) {
    std::vector<std::pair<std::int64_t, std::size_t>> byStudent;
    byStudent.reserve(students.size());
    for (std::size_t i = 0; i < students.size(); ++i) {
        byStudent.emplace_back(students[i].row->id, i);
        students[i].alsoIn.clear();
    }
    std::ranges::sort(byStudent, std::less{});
    std::int64_t different = 0;
    for (auto first = byStudent.begin(); first != byStudent.end(); ++different) {
        const auto last = std::find_if(
            first, byStudent.end(), [&](const auto &entry) { return entry.first != first->first; });
        for (auto entry = first; entry != last; ++entry) {
            for (auto other = first; other != last; ++other) {
                if (other != entry)
                    students[entry->second].alsoIn.push_back(students[other->second].courseCode);
            }
        }
        first = last;
    }
    return different;
}

std::string newsText(const DashboardStudent &student, bool remembersContacts) {
    std::vector<std::string> news;
    if (student.change)
        news.push_back(movementText(*student.change));
    if (belongs(student, DashboardChip::awaitingFollowUp))
        news.emplace_back("awaiting follow-up");
    if (student.outcome)
        news.push_back("wrote " + contactedText(*student.outcome));
    else if (remembersContacts)
        news.emplace_back("not yet reached");
    if (!student.alsoIn.empty())
        news.push_back("also in " + join(student.alsoIn, ", "));
    return join(news, " · ");
}

std::string emptyText(std::optional<DashboardChip> chip) {
    if (!chip)
        return "Nobody needs you right now. Every student is OK.";
    const std::optional<RosterChip> same = rosterChip(*chip);
    return same ? emptyText(RosterQuery{.chip = *same}) : "No student is at risk.";
}

std::string accessibleText(const DashboardStudent &student, bool remembersContacts) {
    const RiskRow &row = *student.row;
    std::string text =
        collapsed(row.name) + ", " + std::string(levelName(row.level)) + ", " + student.courseCode;
    if (!row.reasonLines.empty())
        text += ". " + reasonsText(row);
    if (const std::string news = newsText(student, remembersContacts); !news.empty())
        text += ". " + news;
    return text;
}

} // namespace ellwynd
