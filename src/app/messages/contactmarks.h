// The recording of contacts with students of several courses.
#pragma once

#include "memory/contactlog.h"

#include <functional>

namespace ellwynd {

/// Puts a text on the clipboard. Returns whether it is there: another program may hold the
/// clipboard.
using ClipboardWriter = std::function<bool(const std::string &text)>;

/// Records a contact with each of the students, all at `date`.
[[nodiscard]] ContactChange
noteContacts(ContactLog &contacts, const SharedList<RiskRow> &students, Date date);

} // namespace ellwynd
