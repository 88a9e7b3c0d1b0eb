#include "app/explain/lookback.h"

#include "base/calendar.h"
#include "base/text.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace ellwynd {

namespace {

/// The recorded levels of one student by the start of the day; a later entry of a day counts.
using Levels = std::map<Date, RecordedLevel>;

bool isBetterWithinTwoWeeks(const Levels &levels, Date contactedAt) {
    constexpr int days = 14;
    const Date contactDay = calendar::startOfDay(contactedAt);
    const auto after = levels.upper_bound(contactDay);
    if (after == levels.begin())
        return false;
    const RecordedLevel then = std::prev(after)->second;
    return std::any_of(after, levels.end(), [&](const auto &entry) {
        return calendar::daysBetween(contactDay, entry.first) <= days && entry.second.isKnown() &&
            then.worseningTo(entry.second.level()) < 0;
    });
}

int lastSeverity(const LookBack::Row &row) {
    for (auto level = row.levels.rbegin(); level != row.levels.rend(); ++level) {
        if (level->isKnown())
            return severity(level->level());
    }
    return 0;
}

} // namespace

LookBack lookBack(
    std::int64_t courseID, const SharedList<RiskRow> &roster, const RosterHistory &history,
    const ContactLog &contacts) {
    std::unordered_map<std::int64_t, Levels> levelsOf;
    std::set<Date> days;
    for (const auto &visit : history.visits(courseID)) {
        const Date day = calendar::startOfDay(visit->recordedAt());
        for (std::size_t i = 0; i < visit->size(); ++i)
            levelsOf[visit->studentID(i)].insert_or_assign(day, visit->level(i));
        days.insert(day);
    }
    LookBack look{.days = {days.begin(), days.end()}, .rows = {}};
    const auto addRow = [&](std::int64_t studentID, std::string name) {
        const Levels &levels = levelsOf[studentID];
        LookBack::Row row{.studentID = studentID, .name = std::move(name), .levels = {}};
        for (const Date day : look.days) {
            const auto found = levels.find(day);
            row.levels.push_back(found != levels.end() ? found->second : RecordedLevel());
        }
        look.rows.push_back(std::move(row));
        if (const auto contact = contacts.lastContact(courseID, studentID)) {
            ++look.wroteTo;
            look.better += isBetterWithinTwoWeeks(levels, contact->contactedAt) ? 1 : 0;
        }
    };
    std::set<std::int64_t> onRoster;
    for (const RiskRow &row : roster) {
        onRoster.insert(row.id);
        addRow(row.id, row.name);
    }
    std::vector<std::int64_t> others;
    for (const auto &[studentID, levels] : levelsOf) {
        if (!onRoster.contains(studentID))
            others.push_back(studentID);
    }
    std::ranges::sort(others);
    for (const std::int64_t studentID : others)
        addRow(studentID, "Student " + std::to_string(studentID));
    std::stable_sort(
        look.rows.begin() + std::ptrdiff_t(roster.size()), look.rows.end(),
        [](const LookBack::Row &a, const LookBack::Row &b) {
            return lastSeverity(a) > lastSeverity(b);
        });
    return look;
}

std::string outreachSummary(const LookBack &look, bool remembersContacts) {
    if (!remembersContacts)
        return "Contacts are not remembered.";
    if (look.wroteTo == 0)
        return "You have not written to anyone in this course.";
    return std::to_string(look.wroteTo) + " written to, " + std::to_string(look.better) +
        " better within two weeks";
}

std::string_view levelLetter(const RecordedLevel &level) {
    if (!level.isKnown())
        return {};
    if (!level.level())
        return "–";
    switch (*level.level()) {
    case RiskLevel::atRisk:
        return "R";
    case RiskLevel::concern:
        return "C";
    case RiskLevel::watch:
        break;
    }
    return "W";
}

} // namespace ellwynd
