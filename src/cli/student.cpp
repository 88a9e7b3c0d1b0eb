#include "app/explain/explaintexts.h"
#include "app/roster/studenthistory.h"
#include "base/calendar.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/names.h"
#include "cli/terminaltext.h"

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

JSON studentDocument(const RiskRow &row, const StudentHistory &history) {
    return {
        {"row", rowDocument(row, history.outreach)},
        {"movement", history.change ? JSON(changeText(*history.change)) : JSON(nullptr)},
        {"story", history.trend ? JSON(termStory(*history.trend)) : JSON(nullptr)},
        {"trend", trendDocument(history.trend)},
        {"outreach", history.outreach ? JSON(outreachText(*history.outreach)) : JSON(nullptr)},
    };
}

std::string
studentText(const RiskRow &row, const StudentHistory &history, Date now, std::size_t columns) {
    std::string text = rowsTable({row}, {.now = now, .memory = {}, .columns = columns});
    const auto paragraph = [&text](const std::string &sentence) {
        text += fmt::format("\n{}\n", terminalText(sentence));
    };
    paragraph(signalsText(row));
    if (history.isNew)
        paragraph(std::string(newStudentText));
    if (history.change)
        paragraph(changeText(*history.change) + ".");
    if (history.trend)
        paragraph(termStory(*history.trend));
    if (history.outreach)
        paragraph(outreachText(*history.outreach) + ".");
    return text;
}

} // namespace

static int runStudent(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "student", "Show one student's reasons and history.");
    line.argument("COURSE", "The course's id, name or code.");
    line.argument("STUDENT", "The student's id or name.");
    if (!line.parse(words))
        return done;
    const Reference wanted = parseReference(line.word(0), "course");
    const Reference student = parseReference(line.word(1), "student");
    const ScoredCourse course = loadCourse(context, wanted);
    const RiskRow &row = findStudent(course, student);
    const StudentHistory history =
        studentHistory(row, movementOf(course, context.stores()), context.stores(), context.now());
    line.print(
        line.wantsJSON() ? printed(studentDocument(row, history))
                         : studentText(row, history, context.now(), line.columns()));
    return done;
}

Command studentCommand() {
    return {"student", "show one student's reasons and history", runStudent};
}

} // namespace ellwynd::cli
