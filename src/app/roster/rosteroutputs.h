// What leaves the roster on screen: texts for the clipboard and files.
#pragma once

#include "app/roster/rosterview.h"
#include "outputs/export/rosterexport.h"
#include "outputs/messages/messagetemplate.h"

namespace ellwynd {

/// A template filled for students of a roster, each with the name and the passing score of their
/// course.
[[nodiscard]] std::string messagesText(
    const MessageTemplate &message, const std::vector<RiskRow> &students, const RosterView &roster,
    const UserDefaults &defaults);

/// A roster as a file.
struct RosterExport {
    /// What a save panel begins with.
    std::string fileName;
    std::string text;
};
[[nodiscard]] RosterExport
exportOf(const RosterView &roster, ExportFormat format, const Stores &stores, Date now);

} // namespace ellwynd
