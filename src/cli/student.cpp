#include "app/roster/studenthistory.h"
#include "base/calendar.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/table.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ellwynd::cli {

namespace {

JSON trendDocument(const std::optional<TermTrend> &trend) {
    if (!trend)
        return nullptr;
    JSON points = JSON::array();
    for (const TermTrend::Point &point : trend->points) {
        points.push_back(
            {{"date", calendar::dayKey(point.date)},
             {"level", point.level ? JSON(levelName(*point.level)) : JSON(nullptr)}});
    }
    return points;
}

JSON studentDocument(const RiskRow &row, const StudentPast &past) {
    return {
        {"row", rowDocument(row, past.outreach)},
        {"movement", past.change ? JSON(changeText(*past.change)) : JSON(nullptr)},
        {"story", past.trend ? JSON(termStory(*past.trend)) : JSON(nullptr)},
        {"trend", trendDocument(past.trend)},
        {"outreach", past.outreach ? JSON(outreachText(*past.outreach)) : JSON(nullptr)},
    };
}

std::string studentText(const RiskRow &row, const StudentPast &past, Date now) {
    std::string text = rowsTable(std::span(&row, 1), {.now = now});
    const auto paragraph = [&text](const std::string &sentence) {
        text += "\n" + printable(sentence) + "\n";
    };
    if (past.change)
        paragraph(changeText(*past.change) + ".");
    if (past.trend)
        paragraph(termStory(*past.trend));
    if (past.outreach)
        paragraph(outreachText(*past.outreach) + ".");
    return text;
}

} // namespace

static int runStudent(Session &session, const QStringList &words) {
    CommandLine line(session, "student", "One student: why, and what is remembered.");
    line.argument("COURSE", "The course's id.");
    line.argument("STUDENT", "The student's id.");
    if (!line.parse(words))
        return done;
    const std::int64_t courseID = parseID(line.word(0), "course");
    const std::int64_t studentID = parseID(line.word(1), "student");
    const ScoredCourse course = loadByID(session, courseID);
    const RiskRow &row = findStudent(course, studentID);
    const StudentPast past =
        studentPast(row, movementOf(course, session.stores()), session.stores(), session.now());
    line.print(
        line.wantsJSON() ? printed(studentDocument(row, past))
                         : studentText(row, past, session.now()));
    return done;
}

Command studentCommand() {
    return {"student", "one student: why, and what is remembered", runStudent};
}

} // namespace ellwynd::cli
