// The stores of one run of the program.
#pragma once

#include "memory/contactlog.h"
#include "memory/rosterhistory.h"
#include "outputs/messages/templatestore.h"

namespace ellwynd {

/// What the program remembers between visits: on disk for a teacher's own courses; for the sample
/// college in memory alone, filled with an invented history.
struct Stores {
    /// @param directory the data directory.
    Stores(UserDefaults &defaults, const std::filesystem::path &directory, Clock clock = systemNow);

    RosterHistory history;
    ContactLog contacts;
    /// The teacher's own file, in sample mode too.
    TemplateStore templates;
};

} // namespace ellwynd
