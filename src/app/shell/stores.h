// The stores of the program's recorded data.
#pragma once

#include "memory/contactlog.h"
#include "memory/rosterhistory.h"
#include "outputs/messages/templatestore.h"

namespace ellwynd {

/// The history, contacts and templates. For the teacher's own courses all are files; for the sample
/// college the history and contacts are invented and held only in memory.
struct Stores {
    /// Deletes the files of a history or contacts that the teacher has switched off, be it with a
    /// launch argument for this run.
    /// @param defaults must outlive this object.
    /// @param directory the data directory.
    /// @param startWork reads and saves the history in the background; null if that is done at
    /// once.
    Stores(
        UserDefaults &defaults, const std::filesystem::path &directory, Clock clock = systemNow,
        StartWork startWork = nullptr);

    RosterHistory history;
    ContactLog contacts;
    /// The teacher's own templates, in sample mode too.
    TemplateStore templates;
};

} // namespace ellwynd
