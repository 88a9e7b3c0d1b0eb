#include "app/roster/rosterquery.h"

#include "app/find/comparabletext.h"
#include "app/roster/rostertexts.h"
#include "base/text.h"

#include <QCollator>
#include <QString>

#include <algorithm>
#include <unordered_map>

namespace ellwynd {

namespace {

QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

bool contains(const std::string &text, const std::string &word) {
    return text.find(word) != std::string::npos;
}

/// The texts of a row except its assignments.
std::string searchableHead(const RiskRow &row, const std::string &courseCode) {
    return row.name + '\n' + std::string(levelName(row.level)) + '\n' + row.courseName + '\n' +
        courseCode;
}

bool isMissing(const RiskRow &row, std::int64_t assignmentID) {
    for (const ReasonLine &line : row.reasonLines) {
        for (const ReasonLink &link : line.links) {
            const auto *assignment = std::get_if<AssignmentRef>(&link.target);
            if (assignment != nullptr && assignment->id == assignmentID)
                return true;
        }
    }
    return false;
}

/// "flagged student", as the subject of "No …".
std::string_view subject(RosterChip chip) {
    switch (chip) {
    case RosterChip::flagged:
        return "flagged student";
    case RosterChip::worse:
        return "student who got worse";
    case RosterChip::improved:
        return "student who improved";
    case RosterChip::notYetReached:
        return "flagged student not yet reached";
    case RosterChip::awaitingFollowUp:
        return "student awaiting follow-up";
    case RosterChip::everyone:
        break;
    }
    return "student";
}

/// Sorts by a key of each row, and keeps the order of equal rows in both directions.
template<class Key>
void sortBy(std::vector<std::size_t> &order, bool descending, Key key) {
    std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
        return descending ? key(b) < key(a) : key(a) < key(b);
    });
}

} // namespace

std::string_view chipName(RosterChip chip) {
    switch (chip) {
    case RosterChip::flagged:
        return "Flagged";
    case RosterChip::worse:
        return "Worse";
    case RosterChip::improved:
        return "Improved";
    case RosterChip::notYetReached:
        return "Not yet reached";
    case RosterChip::awaitingFollowUp:
        return "Awaiting follow-up";
    case RosterChip::everyone:
        break;
    }
    return "Everyone";
}

RosterRows::RosterRows(const RosterView &roster)
    : all(roster.rows),
      outreach(roster.outreach),
      courseCodes(roster.courseCodes),
      oneCourse(roster.courseID.has_value()),
      remembersContacts(roster.remembersContacts) {
    for (const RosterChange &moved : roster.movement)
        movement.emplace(StudentKey{moved.courseID, moved.studentID}, moved);
    chipsOfRows.reserve(all.size());
    for (const RiskRow &row : all)
        chipsOfRows.push_back(chipsOf(row));
}

const RosterChange *RosterRows::change(const RiskRow &row) const {
    const auto found = movement.find(keyOf(row));
    return found != movement.end() ? &found->second : nullptr;
}

const OutreachOutcome *RosterRows::outcome(const RiskRow &row) const {
    const auto found = outreach.find(keyOf(row));
    return found != outreach.end() ? &found->second : nullptr;
}

const std::string &RosterRows::courseCode(const RiskRow &row) const {
    const auto found = courseCodes.find(row.courseID);
    return found != courseCodes.end() ? found->second : row.courseName;
}

const std::string &RosterRows::sortName(const RiskRow &row) const {
    return row.sortableName && !row.sortableName->empty() ? *row.sortableName : row.name;
}

std::vector<RosterChip> RosterRows::chips() const {
    std::vector<RosterChip> offered;
    for (const RosterChip chip : allRosterChips) {
        const bool ofCourse = chip == RosterChip::worse || chip == RosterChip::improved ||
            chip == RosterChip::everyone;
        const bool ofContacts =
            chip == RosterChip::notYetReached || chip == RosterChip::awaitingFollowUp;
        if ((oneCourse || !ofCourse) && (remembersContacts || !ofContacts))
            offered.push_back(chip);
    }
    return offered;
}

RosterRows::Chips RosterRows::chipsOf(const RiskRow &row) const {
    const RosterChange *moved = change(row);
    const OutreachOutcome *since = outcome(row);
    Chips chips;
    const auto set = [&](RosterChip chip, bool belongs) { chips.set(std::size_t(chip), belongs); };
    set(RosterChip::flagged, row.level.has_value());
    set(RosterChip::worse, moved != nullptr && isWorse(*moved));
    set(RosterChip::improved, moved != nullptr && hasImproved(*moved));
    set(RosterChip::notYetReached, row.level && since == nullptr);
    set(RosterChip::awaitingFollowUp, since != nullptr && isAwaitingFollowUp(*since));
    set(RosterChip::everyone, true);
    return chips;
}

std::size_t RosterRows::count(RosterChip chip) const {
    return std::size_t(std::ranges::count_if(
        chipsOfRows, [&](Chips chips) { return chips.test(std::size_t(chip)); }));
}

ShownRows RosterRows::shown(const RosterQuery &query) const {
    const std::vector<std::string> words = searchWords(query.typed);
    if (!words.empty() && !search)
        search = std::make_shared<const RowSearch>(all, courseCodes);
    const std::vector<bool> matching =
        words.empty() ? std::vector<bool>() : search->rowsWith(words);
    ShownRows result;
    std::vector<std::size_t> unflagged;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if ((!words.empty() && !matching[i]) ||
            (query.missing && !isMissing(all[i], query.missing->id)))
            continue;
        if (chipsOfRows[i].test(std::size_t(query.chip)))
            result.order.push_back(i);
        else if (query.chip == RosterChip::flagged)
            unflagged.push_back(i);
    }
    if (!words.empty() && result.order.empty())
        result.order = std::move(unflagged);
    else
        result.folded = unflagged.size();
    sort(result.order, query);
    return result;
}

void RosterRows::sort(std::vector<std::size_t> &order, const RosterQuery &query) const {
    const auto byText = [&](auto textOf) {
        QCollator collator;
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        // Many rows may have the same text, such as that of their course.
        std::unordered_map<std::string, std::size_t> indexOf;
        std::vector<QCollatorSortKey> keys;
        std::vector<std::size_t> keyOfRow(all.size());
        for (const std::size_t i : order) {
            const std::string &text = textOf(all[i]);
            const auto [known, isNew] = indexOf.emplace(text, keys.size());
            if (isNew)
                keys.push_back(collator.sortKey(qtText(text)));
            keyOfRow[i] = known->second;
        }
        std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
            const int compared = keys[keyOfRow[a]].compare(keys[keyOfRow[b]]);
            return query.descending ? compared > 0 : compared < 0;
        });
    };
    switch (query.sort) {
    case RosterSort::worstFirst:
        break;
    case RosterSort::level:
        sortBy(order, query.descending, [](std::size_t i) { return i; });
        break;
    case RosterSort::student:
        byText([this](const RiskRow &row) { return sortName(row); });
        break;
    case RosterSort::course:
        byText([this](const RiskRow &row) { return courseCode(row); });
        break;
    case RosterSort::score: {
        constexpr double unknown = 1e9;
        sortBy(order, query.descending, [&](std::size_t i) {
            return all[i].currentScore.value_or(unknown);
        });
        break;
    }
    case RosterSort::lastActive:
        // Students without activity count as the longest inactive.
        sortBy(order, query.descending, [this](std::size_t i) {
            return all[i].lastActivityAt.value_or(Date::min());
        });
        break;
    case RosterSort::contacted:
        // Awaiting follow-up first, then by date with the oldest first; students never contacted
        // last.
        sortBy(order, query.descending, [this](std::size_t i) {
            const OutreachOutcome *since = outcome(all[i]);
            if (since == nullptr)
                return std::pair(2, Date{});
            return std::pair(isAwaitingFollowUp(*since) ? 0 : 1, since->contactedAt);
        });
        break;
    }
}

RosterQuery
RosterRows::revealing(const RosterQuery &query, const std::set<StudentKey> &students) const {
    const auto all_of = [&](const RosterQuery &candidate) {
        const ShownRows rows = shown(candidate);
        const auto isWanted = [&](std::size_t i) { return students.contains(keyOf(all[i])); };
        const auto wanted = std::ranges::count_if(
            all, [&](const RiskRow &row) { return students.contains(keyOf(row)); });
        return std::ranges::count_if(rows.order, isWanted) == wanted;
    };
    if (all_of(query))
        return query;
    RosterQuery wider = withoutFilter(query);
    if (!all_of(wider))
        wider.chip = RosterChip::everyone;
    return wider;
}

std::vector<std::string> searchWords(std::string_view typed) {
    std::vector<std::string> words;
    for (const QString &word :
         qtText(comparable(typed)).simplified().split(u' ', Qt::SkipEmptyParts))
        words.push_back(word.toStdString());
    return words;
}

std::vector<MatchedPart> matchedParts(std::string_view text, std::string_view typed) {
    const ComparableText searched = comparableText(text);
    std::vector<MatchedPart> parts;
    for (const std::string &word : searchWords(typed)) {
        const QString wanted = qtText(word);
        const qsizetype at = searched.text.indexOf(wanted);
        if (at < 0)
            continue;
        const std::size_t begin = searched.begins[std::size_t(at)];
        parts.push_back({begin, searched.ends[std::size_t(at + wanted.size() - 1)] - begin});
    }
    return parts;
}

std::string
matchedAssignmentsText(const RiskRow &row, const std::string &courseCode, std::string_view typed) {
    const std::string head = comparable(searchableHead(row, courseCode));
    std::vector<std::string> words = searchWords(typed);
    std::erase_if(words, [&](const std::string &word) { return contains(head, word); });
    std::vector<std::string> names;
    for (const AssignmentRef &assignment : missingAssignments(row)) {
        const std::string name = comparable(assignment.name);
        if (std::ranges::any_of(
                words, [&](const std::string &word) { return contains(name, word); }))
            names.push_back(oneLine(assignment.name));
    }
    return names.empty() ? "" : "Missing " + join(names, ", ");
}

std::string foldedText(std::size_t count) {
    return studentsText(count) + " without a flag";
}

std::string_view sortName(RosterSort sort) {
    switch (sort) {
    case RosterSort::worstFirst:
        return "Worst First";
    case RosterSort::level:
        return "Level";
    case RosterSort::student:
        return "Student";
    case RosterSort::course:
        return "Course";
    case RosterSort::score:
        return "Score";
    case RosterSort::lastActive:
        return "Last Active";
    case RosterSort::contacted:
        return "Contacted";
    }
    return {};
}

std::string sortedByText(const RosterQuery &query) {
    return query.sort == RosterSort::worstFirst ? ""
                                                : "Sorted by " + std::string(sortName(query.sort));
}

RosterQuery sortedBy(RosterQuery query, RosterSort sort) {
    if (query.sort != sort) {
        query.sort = sort;
        query.descending = false;
    } else if (!query.descending && sort != RosterSort::worstFirst) {
        query.descending = true;
    } else {
        query.sort = RosterSort::worstFirst;
        query.descending = false;
    }
    return query;
}

std::string emptyText(const RosterQuery &query) {
    const std::string typed(trim(query.typed));
    if (!typed.empty() || query.missing) {
        std::string text = "No " + std::string(subject(query.chip));
        if (query.missing)
            text += " is missing “" + oneLine(query.missing->name) + "”";
        if (!typed.empty())
            text += (query.missing ? " and" : "") + (" matches “" + oneLine(typed)) + "”";
        return text + ".";
    }
    switch (query.chip) {
    case RosterChip::worse:
        return "No student got worse since your last visit.";
    case RosterChip::improved:
        return "No student improved since your last visit.";
    case RosterChip::notYetReached:
        return "You have written to every flagged student.";
    case RosterChip::awaitingFollowUp:
        return "No student awaits follow-up.";
    case RosterChip::flagged:
        return "No student is flagged.";
    case RosterChip::everyone:
        break;
    }
    return "No students found for this course.";
}

std::string_view resetText(const RosterQuery &query) {
    return withoutFilter(query).chip == query.chip ? "Clear the Filter"
                                                   : "Show All Flagged Students";
}

RosterQuery withoutFilter(const RosterQuery &query) {
    const bool everyone = query.chip == RosterChip::everyone;
    return {
        .chip = everyone ? RosterChip::everyone : RosterChip::flagged,
        .sort = query.sort,
        .descending = query.descending};
}

std::string moreReasonsText(std::size_t hidden) {
    return "and " + plural(std::int64_t(hidden), "more reason");
}

} // namespace ellwynd
