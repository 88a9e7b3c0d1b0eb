// The message template that was last used in each course.
#pragma once

#include "preferences/userdefaults.h"

#include <set>

namespace ellwynd::lastTemplates {

/// The id of the template; empty if none was used in the course.
[[nodiscard]] std::string of(const UserDefaults &defaults, std::int64_t courseID);

/// Saves a template as the last one of these courses.
void save(
    UserDefaults &defaults, const std::set<std::int64_t> &courseIDs, const std::string &templateID);

} // namespace ellwynd::lastTemplates
