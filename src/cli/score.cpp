#include "app/roster/savedcourse.h"
#include "base/files.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/documents.h"

#include <nlohmann/json.hpp>

namespace ellwynd::cli {

static int runScore(CommandContext &context, const QStringList &words) {
    CommandLine line(context, "score", "Score Canvas JSON saved in a folder.");
    line.argument(
        "DIR", "Holds course.json, enrollments.json, assignment_groups.json and submissions.json.");
    line.option("passing", "P", "Passing score, percent.");
    line.option("inactivity", "T", "Inactivity window, days behind the class.");
    line.option("now", "INSTANT", "Score as of this ISO 8601 instant.");
    line.flag("ids", "Print the id of every student and assignment.");
    if (!line.parse(words))
        return done;

    // Only launch arguments count: scoring a folder reads no preferences file and no store.
    const UserDefaults unsaved({}, context.launchArguments());
    CourseThresholds thresholds{
        .passingScore = unsaved.value(preferences::defaultPassingScore),
        .inactivityDays = unsaved.value(preferences::defaultInactivityDays)};
    if (const auto passing = passingOption(line)) {
        thresholds.passingScore = *passing;
        thresholds.passingOverridden = true;
    }
    if (const auto inactivity = inactivityOption(line)) {
        thresholds.inactivityDays = *inactivity;
        thresholds.inactivityOverridden = true;
    }

    Date now = context.now();
    if (const auto word = line.value("now")) {
        const auto instant = parseInstant(*word);
        if (!instant)
            throw UsageError("--now takes an ISO 8601 instant such as 2026-09-03T14:05:09Z");
        now = *instant;
    }
    try {
        const ScoredCourse course = scoreSavedCourse(line.word(0), thresholds, now);
        line.print(
            line.wantsJSON() ? printed(rosterDocument(course, {}))
                             : rosterText(
                                   course,
                                   {.withIDs = line.has("ids"),
                                    .now = now,
                                    .memory = {},
                                    .columns = line.columns()}));
    } catch (const FileError &error) {
        throw Failure(error.what());
    }
    return done;
}

Command scoreCommand() {
    return {"score", "score Canvas JSON saved in a folder", runScore};
}

} // namespace ellwynd::cli
