// The sample college's invented history: two weeks of visits and a few messages.
#pragma once

#include "memory/contactlog.h"
#include "memory/rostersnapshot.h"

#include <vector>

namespace ellwynd {

/// Levels of some forty students on seven days before today, such that each kind of movement shows
/// on the first start.
[[nodiscard]] std::vector<RosterSnapshot> sampleHistory(Date now);

/// Students written to a few days and more than a week ago.
[[nodiscard]] std::vector<ContactRecord> sampleContacts(Date now);

} // namespace ellwynd
