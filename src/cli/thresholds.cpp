#include "app/shell/settings.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"
#include "cli/names.h"

#include <nlohmann/json.hpp>

namespace ellwynd::cli {

static int runThresholds(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "thresholds", "Show, set or reset one course's thresholds.");
    line.argument("COURSE", "The course's id, name or code.");
    line.option("passing", "P", "Passing score for this course, percent.");
    line.option("inactivity", "T", "Inactivity window for this course, days behind the class.");
    line.flag("use-defaults", "Follow the defaults again.");
    if (!line.parse(words))
        return done;
    const Reference course = parseReference(line.word(0), "course");
    const auto passing = passingOption(line);
    const auto inactivity = inactivityOption(line);
    if (line.has("use-defaults") && (passing || inactivity))
        throw UsageError("--use-defaults cannot be combined with --passing or --inactivity");

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
