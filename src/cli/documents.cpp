#include "cli/documents.h"

#include "app/rostertexts.h"
#include "cli/table.h"
#include "platform/calendar.h"

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

} // namespace

JSON rowDocument(const RiskRow &row) {
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
        {"courseID", row.courseID},
        {"courseName", row.courseName},
        {"score", row.score},
        {"level", row.level ? JSON(levelName(*row.level)) : JSON(nullptr)},
        {"currentScore", orNull(row.currentScore)},
        {"currentGrade", orNull(row.currentGrade)},
        {"missingCount", row.missingCount},
        {"lastActivityAt", instant(row.lastActivityAt)},
        {"totalActivityTime", orNull(row.totalActivityTime)},
        {"reasons", std::move(reasons)},
        {"contactedAt", nullptr},
        {"outreach", nullptr},
        {"awaitingFollowUp", false},
    };
}

JSON rosterDocument(const ScoredCourse &course) {
    JSON rows = JSON::array();
    for (const RiskRow &row : course.rows)
        rows.push_back(rowDocument(row));
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
        {"movement", {{"summary", nullptr}, {"changes", JSON::array()}}},
    };
}

std::string printed(const JSON &document) {
    return document.dump(2, ' ', false, JSON::error_handler_t::replace) + "\n";
}

std::string rowsTable(std::span<const RiskRow> rows, bool withCourse, Date now) {
    std::vector<Table::Column> columns{{"Level"}, {"Student"}};
    if (withCourse)
        columns.push_back({"Course"});
    for (Table::Column column :
         {Table::Column{"Score", true}, {"Missing", true}, {"Last active"}, {"Why"}})
        columns.push_back(std::move(column));
    Table table(std::move(columns));
    for (const RiskRow &row : rows) {
        std::vector<std::string> cells{std::string(levelName(row.level)), row.name};
        if (withCourse)
            cells.push_back(row.courseName);
        cells.push_back(scoreAndGradeText(row));
        cells.push_back(row.missingCount > 0 ? std::to_string(row.missingCount) : "");
        cells.push_back(lastActiveText(row.lastActivityAt, now));
        cells.push_back(reasonsText(row));
        table.add(std::move(cells));
    }
    return table.text();
}

std::string rosterText(const ScoredCourse &course, Date now) {
    std::string text = fmt::format(
        "{}\n{} · updated {}\n{}\n\n", printable(displayName(course.course)),
        studentsText(course.rows.size()), calendar::shortTime(course.fetchedAt),
        thresholdsSummary(course.thresholds));
    if (course.rows.empty())
        return text + "No students found for this course.\n";
    text += rowsTable(course.rows, false, now);
    if (!course.missedWork.empty()) {
        Table table({{"Missing work by assignment"}, {"Missing", true}, {""}});
        for (const MissedAssignment &assignment : course.missedWork) {
            table.add(
                {assignment.name, std::to_string(assignment.studentIDs.size()),
                 assignment.isClassWide ? "excluded from risk scores" : ""});
        }
        text += "\n" + table.text();
    }
    return text;
}

} // namespace ellwynd::cli
