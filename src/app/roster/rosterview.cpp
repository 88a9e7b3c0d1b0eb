#include "app/roster/rosterview.h"

#include "app/courses/courselabel.h"

#include <algorithm>

namespace ellwynd {

std::map<StudentKey, OutreachOutcome>
outreachOf(const SharedList<RiskRow> &rows, const Stores &stores, Date now) {
    std::map<StudentKey, OutreachOutcome> outcomes;
    for (const RiskRow &row : rows) {
        if (const auto outcome = lastOutcome(row, stores.contacts, stores.history, now))
            outcomes.emplace(keyOf(row), *outcome);
    }
    return outcomes;
}

std::map<std::int64_t, std::string> courseCodesOf(std::span<const ScoredCourse *const> courses) {
    std::map<std::int64_t, std::string> codes;
    for (const ScoredCourse *course : courses)
        codes.emplace(course->course.id, courseLabel(course->course).shortName());
    return codes;
}

std::vector<std::string> notesOf(std::span<const ScoredCourse *const> courses) {
    std::vector<std::string> notes;
    for (const ScoredCourse *course : courses) {
        for (const std::string &note : course->notes)
            notes.push_back(courses.size() > 1 ? displayName(course->course) + ": " + note : note);
    }
    return notes;
}

std::string noteText(const RosterView &roster) {
    std::string text;
    if (!roster.staleReason.empty())
        text = roster.staleReason + " Showing what was loaded before.";
    for (const std::string &note : roster.notes)
        text += (text.empty() ? "" : "\n") + note;
    return text;
}

std::string rememberedLine(const RosterView &roster) {
    std::string line = summaryLine(roster.movement).value_or("");
    const auto awaiting = std::ranges::count_if(
        roster.outreach, [](const auto &entry) { return isAwaitingFollowUp(entry.second); });
    if (awaiting > 0)
        line += (line.empty() ? "" : " · ") + awaitingText(awaiting);
    if (roster.thresholdsChanged)
        line += line.empty() ? "Thresholds changed since your last visit"
                             : " · thresholds changed since";
    return line;
}

} // namespace ellwynd
