#include "app/roster/rosteroutputs.h"

#include "risk/coursethresholds.h"

namespace ellwynd {

std::string messagesText(
    const MessageTemplate &message, const std::vector<RiskRow> &students, const RosterView &roster,
    const UserDefaults &defaults) {
    const auto courseName = roster.courseID ? std::optional{roster.title} : std::nullopt;
    return fillAll(message, students, courseName, [&defaults](std::int64_t courseID) {
        return courseThresholds(defaults, courseID).passingScore;
    });
}

RosterExport
exportOf(const RosterView &roster, ExportFormat format, const Stores &stores, Date now) {
    const ExportSource source{
        .contacts = stores.contacts,
        .history = stores.history,
        .now = now,
        .wholeTerm = !roster.courseID};
    return {
        .fileName = exportFileName(format, roster.title, now),
        .text = exportText(format, roster.title, roster.rows, source)};
}

} // namespace ellwynd
