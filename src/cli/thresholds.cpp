#include "app/explain/thresholdeffect.h"
#include "app/shell/settings.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/names.h"
#include "cli/terminaltext.h"

#include <nlohmann/json.hpp>

namespace ellwynd::cli {

namespace {

JSON changeDocument(const ThresholdEffect::Change &change) {
    const auto level = [](std::optional<RiskLevel> of) {
        return of ? JSON(levelName(*of)) : JSON(nullptr);
    };
    return {
        {"id", change.student.studentID},
        {"name", change.name},
        {"from", level(change.from)},
        {"to", level(change.to)}};
}

int printEffect(
    CommandLine &line, CommandContext &context, const Reference &reference,
    std::optional<double> passing, std::optional<std::int64_t> inactivity) {
    const ScoredCourse course = loadCourse(context, reference);
    CourseThresholds then =
        line.has("use-defaults") ? defaultThresholds(context.defaults()) : course.thresholds;
    then.passingScore = passing.value_or(then.passingScore);
    then.inactivityDays = inactivity.value_or(then.inactivityDays);
    const ThresholdEffect effect = thresholdEffect(course, rescored(course, then));
    if (line.wantsJSON()) {
        JSON changes = JSON::array();
        for (const ThresholdEffect::Change &change : effect.changes)
            changes.push_back(changeDocument(change));
        line.print(printed(
            {{"flaggedNow", effect.flaggedBefore},
             {"flaggedThen", effect.flaggedAfter},
             {"changes", std::move(changes)}}));
        return done;
    }
    std::string text = effectLine(effect, course.thresholds, then) + "\n";
    if (const std::string details = effectDetails(effect); !details.empty())
        text += terminalText(details) + "\n";
    line.print(text);
    return done;
}

} // namespace

static int runThresholds(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "thresholds", "Show, set or reset one course's thresholds.");
    line.argument("COURSE", "The course's id, name or code.");
    line.option("passing", "P", "Passing score for this course, percent.");
    line.option("inactivity", "T", "Inactivity window for this course, days behind the class.");
    line.flag("use-defaults", "Follow the defaults again.");
    line.flag("dry-run", "Show what these thresholds would do, and change nothing.");
    if (!line.parse(words))
        return done;
    const Reference course = parseReference(line.word(0), "course");
    const auto passing = passingOption(line);
    const auto inactivity = inactivityOption(line);
    if (line.has("use-defaults") && (passing || inactivity))
        throw UsageError("--use-defaults cannot be combined with --passing or --inactivity");

    if (line.has("dry-run"))
        return printEffect(line, context, course, passing, inactivity);
    const auto source = context.connect();
    const std::int64_t id = findCourse(fetchCourses(context, *source), course).id;
    UserDefaults &defaults = context.defaults();
    if (line.has("use-defaults"))
        useDefaults(defaults, id);
    if (passing)
        writeSetting(defaults, courseSettings::key(id, courseSettings::passingScore), *passing);
    if (inactivity)
        writeSetting(
            defaults, courseSettings::key(id, courseSettings::inactivityDays), *inactivity);

    requireSaved(context);

    const CourseThresholds thresholds = courseThresholds(defaults, id);
    const std::string summary = thresholdsSummary(thresholds);
    if (line.wantsJSON()) {
        line.print(printed(
            {{"passingScore", thresholds.passingScore},
             {"inactivityDays", thresholds.inactivityDays},
             {"passingOverridden", thresholds.passingOverridden},
             {"inactivityOverridden", thresholds.inactivityOverridden},
             {"summary", summary}}));
    } else {
        line.print(summary + "\n");
    }
    return done;
}

Command thresholdsCommand() {
    return {"thresholds", "show, set or reset a course's thresholds", runThresholds};
}

} // namespace ellwynd::cli
