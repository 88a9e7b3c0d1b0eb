// What the dashboard shows of each course, computed again only when it has changed.
#pragma once

#include "app/dashboard/dashboardmodel.h"

#include <map>
#include <span>

namespace ellwynd {

/// A course's card, its changes of level since the last visit, and its flagged students.
struct CourseSummary {
    DashboardCourseCard card;
    std::vector<RosterChange> movement;
    std::vector<DashboardStudent> students;
};

/// The summaries of scored courses. One is computed when it is first asked for, and again after a
/// change of the history or the contacts of its course, of its shared counts, or of the day. Used
/// on the main thread.
class CourseSummaries {
  public:
    /// The references must outlive this object.
    CourseSummaries(const Stores &stores, const TrendSync &trends)
        : stores(stores), trends(trends) {}

    /// Valid until `of` is called for the same course, or `keep`.
    [[nodiscard]] const CourseSummary &of(const SharedCourse &course, Date now);
    /// Forgets all summaries but those of these courses.
    void keep(std::span<const SharedCourse> courses);

  private:
    /// What a summary was made from, besides the course.
    struct Inputs {
        std::uint64_t history = 0;
        std::uint64_t contacts = 0;
        DailyCounts remote;
        /// The start of the day in the time zone of that time.
        Date day;

        bool operator==(const Inputs &) const = default;
    };
    struct Known {
        SharedCourse course;
        Inputs inputs;
        CourseSummary summary;
    };

    const Stores &stores;
    const TrendSync &trends;
    std::map<const ScoredCourse *, Known> known;
};

/// Sets the cards, students and figures of a term from its courses.
void setCourses(
    DashboardTerm &term, std::span<const SharedCourse> courses, CourseSummaries &summaries,
    const Stores &stores, Date now);

} // namespace ellwynd
