// The sample college's invented history: two weeks of visits and a few contacts.
#pragma once

#include "memory/contactlog.h"
#include "memory/rostersnapshot.h"

#include <vector>

namespace ellwynd {

/// The levels of about forty students on seven earlier days, chosen so that every kind of movement
/// is shown on the first start.
[[nodiscard]] std::vector<RosterSnapshot> sampleHistory(Date now);

/// Contacts from a few days ago and from more than a week ago.
[[nodiscard]] std::vector<ContactRecord> sampleContacts(Date now);

} // namespace ellwynd
