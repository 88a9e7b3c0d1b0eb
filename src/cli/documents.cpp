#include "cli/documents.h"

#include "app/explain/explaintexts.h"
#include "app/roster/rostertexts.h"
#include "base/calendar.h"
#include "cli/table.h"
#include "cli/terminaltext.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ellwynd::cli {

namespace {

template<class T>
JSON orNull(const std::optional<T> &value) {
    return value ? JSON(*value) : JSON(nullptr);
}

JSON instant(const std::optional<Date> &date) {
    return date ? JSON(formatInstant(*date)) : JSON(nullptr);
}

JSON linkDocument(const ReasonLink &link) {
    if (const auto *assignment = std::get_if<AssignmentRef>(&link.target))
        return {{"target", "assignment"}, {"id", assignment->id}, {"name", assignment->name}};
    return {{"target", "grades"}};
}

/// The signal's name in documents.
std::string_view documentName(Signal signal) {
    switch (signal) {
    case Signal::missing:
        return "missing";
    case Signal::pastDue:
        return "pastDue";
    case Signal::time:
        return "time";
    case Signal::grade:
        return "grade";
    case Signal::inactivity:
        break;
    }
    return "inactivity";
}

/// Numbers, which add up to the score unless a rule has lifted it.
JSON signalsDocument(const SignalShares &signals) {
    JSON shares = JSON::object();
    for (const Signal signal : allSignals)
        shares[std::string(documentName(signal))] = signals[signal].value_or(0);
    return shares;
}

JSON coverageDocument(const Coverage &coverage) {
    JSON entries = JSON::array();
    for (const SignalCoverage &entry : coverage) {
        entries.push_back(
            {{"signal", documentName(entry.signal)},
             {"counts", entry.counts},
             {"note", entry.note.empty() ? JSON(nullptr) : JSON(entry.note)}});
    }
    return entries;
}

std::string_view kindName(const RosterChange &change) {
    switch (movementKind(change)) {
    case MovementKind::worse:
        return "worse";
    case MovementKind::newcomer:
        return "new";
    case MovementKind::improved:
        return "improved";
    case MovementKind::unchanged:
        break;
    }
    return "unchanged";
}

JSON movementDocument(const std::vector<RosterChange> &movement) {
    JSON changes = JSON::array();
    for (const RosterChange &change : movement) {
        const auto &previous = change.previousLevel;
        const auto &current = change.currentLevel;
        changes.push_back(
            {{"studentID", change.studentID},
             {"previousLevel",
              previous.isKnown() ? JSON(levelName(previous.level())) : JSON(nullptr)},
             {"currentLevel", current ? JSON(levelName(*current)) : JSON(nullptr)},
             {"previousDate", instant(change.previousDate)},
             {"kind", kindName(change)},
             {"text", changeText(change)}});
    }
    const auto summary = summaryLine(movement);
    return {{"summary", orNull(summary)}, {"changes", std::move(changes)}};
}

/// The level with its arrow.
std::string levelCell(const RiskRow &row, const RosterMemory &memory) {
    std::string cell(levelName(row.level));
    for (const RosterChange &change : memory.movement) {
        if (change.studentID == row.id && change.courseID == row.courseID)
            cell += fmt::format(" {}", arrowOf(change));
    }
    return cell;
}

} // namespace

std::optional<OutreachOutcome> RosterMemory::outcomeOf(const RiskRow &row) const {
    const auto found = outreach.find(keyOf(row));
    return found != outreach.end() ? std::optional{found->second} : std::nullopt;
}

JSON rowDocument(const RiskRow &row, const std::optional<OutreachOutcome> &outreach) {
    JSON reasons = JSON::array();
    for (const ReasonLine &line : row.reasonLines) {
        JSON links = JSON::array();
        for (const ReasonLink &link : line.links)
            links.push_back(linkDocument(link));
        reasons.push_back({{"text", line.text}, {"links", std::move(links)}});
    }
    return {
        {"id", row.id},
        {"name", row.name},
        {"sortableName", orNull(row.sortableName)},
        {"courseID", row.courseID},
        {"courseName", row.courseName},
        {"score", row.score},
        {"signals", signalsDocument(row.signals)},
        {"floor", row.floor ? JSON(floorName(*row.floor)) : JSON(nullptr)},
        {"level", row.level ? JSON(levelName(*row.level)) : JSON(nullptr)},
        {"currentScore", orNull(row.currentScore)},
        {"currentGrade", orNull(row.currentGrade)},
        {"missingCount", row.missingCount},
        {"lastActivityAt", instant(row.lastActivityAt)},
        {"totalActivityTime", orNull(row.totalActivityTime)},
        {"reasons", std::move(reasons)},
        {"contactedAt", outreach ? JSON(formatInstant(outreach->contactedAt)) : JSON(nullptr)},
        {"outreach", outreach ? JSON(outreachText(*outreach)) : JSON(nullptr)},
        {"awaitingFollowUp", outreach && isAwaitingFollowUp(*outreach)},
    };
}

JSON rosterDocument(const ScoredCourse &course, const RosterMemory &memory) {
    JSON rows = JSON::array();
    for (const RiskRow &row : course.rows)
        rows.push_back(rowDocument(row, memory.outcomeOf(row)));
    JSON missed = JSON::array();
    for (const MissedAssignment &assignment : course.missedWork) {
        missed.push_back(
            {{"id", assignment.id},
             {"name", assignment.name},
             {"studentIDs", assignment.studentIDs},
             {"rosterSize", assignment.rosterSize},
             {"isClassWide", assignment.isClassWide}});
    }
    return {
        {"course", {{"id", course.course.id}, {"name", displayName(course.course)}}},
        {"fetchedAt", formatInstant(course.fetchedAt)},
        {"passingScore", course.thresholds.passingScore},
        {"inactivityDays", course.thresholds.inactivityDays},
        {"rows", std::move(rows)},
        {"missedWork", std::move(missed)},
        {"movement", movementDocument(memory.movement)},
        {"coverage", coverageDocument(course.coverage)},
        {"notes", course.notes},
    };
}

std::string printed(const JSON &document) {
    return document.dump(2, ' ', false, JSON::error_handler_t::replace) + "\n";
}

std::string rowsTable(const SharedList<RiskRow> &rows, const RowsLayout &layout) {
    const bool contacted = !layout.memory.outreach.empty();
    std::vector<Table::Column> columns{{"Level"}, {"Student"}};
    if (layout.withCourse)
        columns.push_back({"Course"});
    for (const Table::Column &column :
         {Table::Column{"Score", true}, {"Missing", true}, {"Last active"}})
        columns.push_back(column);
    if (contacted)
        columns.push_back({"Contacted"});
    columns.push_back({"Why"});
    Table table(std::move(columns));
    std::vector<std::int64_t> ids;
    std::vector<std::string> names;
    for (const RiskRow &row : rows) {
        std::vector<std::string> cells{levelCell(row, layout.memory), row.name};
        if (layout.withCourse)
            cells.push_back(row.courseName);
        cells.push_back(scoreAndGradeText(row));
        cells.push_back(row.missingCount > 0 ? std::to_string(row.missingCount) : "");
        cells.push_back(lastActiveText(row.lastActivityAt, layout.now));
        if (contacted) {
            const auto outcome = layout.memory.outcomeOf(row);
            cells.push_back(outcome ? contactedText(*outcome) : "");
        }
        cells.push_back(reasonsText(row));
        table.add(std::move(cells));
        ids.push_back(row.id);
        names.push_back(row.name);
    }
    table.addIDs(ids, names, layout.withIDs);
    return table.text(layout.columns);
}

std::string rosterText(const ScoredCourse &course, const RowsLayout &layout) {
    std::string text = fmt::format(
        "{}\n{} · updated {}\n{}\n", terminalText(displayName(course.course)),
        studentsText(course.rows.size()), calendar::shortTime(course.fetchedAt),
        thresholdsSummary(course.thresholds));
    if (isLimited(course.coverage)) {
        text += coverageLine(course.coverage) + "\n";
        for (const SignalCoverage &entry : course.coverage) {
            if (!entry.counts || !entry.note.empty())
                text += "  " + coverageText(entry) + "\n";
        }
    }
    if (const auto summary = summaryLine(layout.memory.movement))
        text += *summary + "\n";
    text += "\n";
    if (course.rows.empty())
        return text + "No students found for this course.\n";
    text += rowsTable(course.rows, layout);
    if (!course.missedWork.empty()) {
        Table table({{"Missing work by assignment"}, {"Missing", true}, {""}});
        std::vector<std::int64_t> ids;
        std::vector<std::string> names;
        for (const MissedAssignment &assignment : course.missedWork) {
            table.add(
                {assignment.name, std::to_string(assignment.studentIDs.size()),
                 assignment.isClassWide ? "excluded from risk scores" : ""});
            ids.push_back(assignment.id);
            names.push_back(assignment.name);
        }
        table.addIDs(ids, names, layout.withIDs);
        text += fmt::format("\n{}", table.text(layout.columns));
    }
    return text;
}

} // namespace ellwynd::cli
