// An invented school whose courses change during a term.
#pragma once

#include "canvas/records/records.h"

#include <map>
#include <vector>

namespace ellwynd::simulation {

/// The students' names contain this, so that a name is found in any file that it must not be in.
inline constexpr std::string_view nameMarker = "Quistorpia";

/// The fraction of every other grade, in percent, which is not in any file either.
inline constexpr double gradeFraction = 0.8125;

/// Canvas of one institution at one moment.
struct School {
    struct Student {
        std::int64_t id = 0;
        std::string name;
        bool enrolled = true;
        std::optional<double> score;
        std::optional<Date> lastActivityAt;
        std::int64_t secondsInCourse = 0;

        bool operator==(const Student &) const = default;
    };

    struct OneCourse {
        Course course;
        std::vector<Student> students;
        std::vector<Assignment> assignments;
        std::vector<SubmissionSummary> submissions;

        bool operator==(const OneCourse &) const = default;
    };

    std::vector<OneCourse> courses;

    /// A school of this host with the courses of a term that begins at `now`.
    /// @param number distinguishes the hosts; their courses have the same ids.
    School(int number, Date now);

    [[nodiscard]] const OneCourse *find(std::int64_t courseID) const;
    OneCourse *find(std::int64_t courseID);

    [[nodiscard]] std::vector<Course> courseList() const;
    [[nodiscard]] static std::vector<Enrollment> enrollments(const OneCourse &course);
    [[nodiscard]] static std::vector<AssignmentGroup> groups(const OneCourse &course);
    /// What is due and was not handed in is missing, some of it two days later.
    [[nodiscard]] static std::vector<SubmissionSummary>
    submissions(const OneCourse &course, Date now);

    void beginTerm(std::int64_t termID, Date now);
    /// Ends the term of a course, with all its courses.
    void endTerm(std::int64_t termID, Date now);
    /// When a term was to end.
    [[nodiscard]] static Date plannedEnd(const Term &term);
    void join(OneCourse &course);
    /// Sets work for everybody on the roster, due in three days.
    void setWork(OneCourse &course, Date now);

    bool operator==(const School &) const = default;

  private:
    int number;
    std::int64_t lastStudentID = 0;
};

} // namespace ellwynd::simulation
