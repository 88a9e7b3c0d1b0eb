// What can be found of the data in memory.
#pragma once

#include "app/dashboard/dashboardmodel.h"
#include "app/find/findindex.h"
#include "app/roster/rostercache.h"

namespace ellwynd {

/// A course, by its name, its code and its name without the code.
[[nodiscard]] FindEntry entryOf(const Course &course);

/// The students of a scored course, by their names and sortable names.
[[nodiscard]] std::vector<FindEntry> studentsOf(const ScoredCourse &course);

/// These courses and their terms, and the students of those that the cache holds.
[[nodiscard]] std::vector<FindEntry>
entriesOf(const std::vector<Course> &courses, const RosterCache &cache);

/// What an index is made from. It shares the students with the cache, so that a thread can make the
/// index.
struct FindContents {
    std::vector<Course> courses;
    RosterCache rosters;
    std::vector<FindEntry> commands;
    std::vector<FindEntry> suggestions;

    /// How many entries the index has, without the terms.
    [[nodiscard]] std::size_t count() const;
};
[[nodiscard]] FindIndex indexOf(const FindContents &contents);

/// The flagged students of a term who need the teacher first.
/// @param term null for none.
[[nodiscard]] std::vector<FindEntry> suggestionsOf(const DashboardTerm *term);

} // namespace ellwynd
