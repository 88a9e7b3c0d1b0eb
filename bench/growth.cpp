// How the time of work on a large teacher's data grows with its size: each at 1, 4 and 16 times a
// size, with the exponent e of "time ~ size^e" between the first and the last. Work that sorts may
// be a little above 1.
#include "app/dashboard/coursesummary.h"
#include "app/find/findindex.h"
#include "app/roster/rosterquery.h"
#include "app/roster/rosterview.h"
#include "app/roster/termroster.h"
#include "base/log.h"
#include "canvas/records/decoding.h"
#include "memory/historyfile.h"
#include "memory/movement.h"
#include "risk/scorer.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace {

using namespace ellwynd;

const Date now = *parseInstant("2026-09-24T12:00:00Z");

Date clockNow() {
    return now;
}

/// The least time of several runs, in milliseconds.
template<class Work>
double timeOf(Work work) {
    double least = 1e9;
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(300);
    for (int run = 0; run < 3 || (run < 200 && std::chrono::steady_clock::now() < until); ++run) {
        const auto begin = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> spent =
            std::chrono::steady_clock::now() - begin;
        least = std::min(least, spent.count());
    }
    return least;
}

/// @param prepare makes the work for a size.
template<class Prepare>
void grow(const char *what, std::int64_t size, Prepare prepare) {
    std::vector<double> times;
    for (const std::int64_t factor : {1, 4, 16}) {
        auto work = prepare(size * factor);
        times.push_back(timeOf(work));
    }
    fmt::print(
        "{:<44}{:>8}{:>10.3f}{:>10.3f}{:>10.3f}{:>8.2f}\n", what, size, times[0], times[1],
        times[2], std::log(times[2] / times[0]) / std::log(16.0));
    std::fflush(stdout);
}

std::vector<SubmissionSummary>
submissionsOf(std::int64_t students, std::int64_t assignments, std::int64_t first) {
    std::vector<SubmissionSummary> submissions;
    for (std::int64_t id = first; id < first + students; ++id) {
        for (std::int64_t assignment = 0; assignment < assignments; ++assignment) {
            const bool missing = (id * 7 + assignment * 13) % 11 == 0;
            submissions.push_back(
                {.userID = id,
                 .assignmentID = assignment,
                 .workflowState = missing ? "unsubmitted" : "graded",
                 .missing = missing,
                 .score = missing ? std::nullopt : std::optional(8.5),
                 .cachedDueDate = now - std::chrono::hours(120)});
        }
    }
    return submissions;
}

std::vector<Enrollment> studentsOf(std::int64_t count, std::int64_t first) {
    std::vector<Enrollment> students;
    for (std::int64_t i = 0; i < count; ++i) {
        const std::int64_t id = first + i;
        students.push_back(
            {.userID = id,
             .user =
                 EnrolledUser{.id = id, .name = fmt::format("Student {} {}", id * 7919 % 1009, id)},
             .grades = Grades{.currentScore = double(30 + id % 70), .currentGrade = "B"},
             .lastActivityAt = now - std::chrono::hours(id % 500),
             .totalActivityTime = 3600 * (id % 40)});
    }
    return students;
}

/// Half of its students are in the course before it too.
SharedCourse courseOf(std::int64_t id, std::int64_t students) {
    const std::int64_t first = id * students / 2;
    ScoredCourse course = scoreCourse(
        {.id = id, .name = fmt::format("Course {}", id), .courseCode = fmt::format("C {}", id)},
        studentsOf(students, first), {}, submissionsOf(students, 20, first), {}, now);
    return std::make_shared<const ScoredCourse>(std::move(course));
}

/// Of courses with 50 students, on each of 27 days.
std::vector<RosterSnapshot> historyOf(std::int64_t courses) {
    std::vector<RosterSnapshot> entries;
    constexpr std::int64_t recordedDays = 27;
    constexpr std::int64_t students = 50;
    for (std::int64_t day = recordedDays; day > 0; --day) {
        for (std::int64_t course = 1; course <= courses; ++course) {
            for (std::int64_t id = course * students / 2; id < course * students / 2 + students;
                 ++id)
                entries.push_back(
                    {course, id, now - std::chrono::days(day),
                     std::string(levelName(RiskLevel((id + day) % 3))), 2});
        }
    }
    return entries;
}

struct Home {
    QTemporaryDir folder;
    UserDefaults defaults{folder.path().toStdString() + "/Preferences.json", {}};
    Stores stores{defaults, folder.path().toStdString() + "/data", clockNow};
    TrendSync trends{defaults};
};

} // namespace

int main(int argc, char **argv) {
    Log::setSink([](std::string_view, Log::Level, std::string_view) {});
    const QCoreApplication application(argc, argv);
    fmt::print(
        "{:<44}{:>8}{:>10}{:>10}{:>10}{:>8}\n", "milliseconds at 1, 4 and 16 times a size", "size",
        "1x", "4x", "16x", "e");
    grow("scoring the students of a course", 100, [](std::int64_t size) {
        return [course = courseOf(1, size), step = 0]() mutable {
            static_cast<void>(rescored(*course, {.passingScore = 70.0 + ++step % 2}));
        };
    });
    grow("reading the history, in courses", 10, [](std::int64_t size) {
        return [text = encodeHistory(visitsOf(historyOf(size)))] {
            static_cast<void>(decodeHistory(text));
        };
    });
    grow("writing the history, in courses", 10, [](std::int64_t size) {
        return [visits = visitsOf(historyOf(size))] { static_cast<void>(encodeHistory(visits)); };
    });
    grow("recording a visit, in courses", 10, [](std::int64_t size) {
        const auto defaults =
            std::make_shared<UserDefaults>(std::filesystem::path(), PreferenceMap());
        const auto history = std::make_shared<RosterHistory>(*defaults, std::nullopt, clockNow);
        history->fill(historyOf(size));
        return [defaults, history, course = courseOf(1, 50)] {
            history->record(course->rows, 1, now);
            static_cast<void>(changes(*history, course->rows, 1, now));
        };
    });
    grow("the students of a term, in courses", 10, [](std::int64_t size) {
        std::vector<SharedCourse> courses;
        for (std::int64_t id = 1; id <= size; ++id)
            courses.push_back(courseOf(id, 50));
        return [courses] {
            std::vector<const ScoredCourse *> all;
            for (const SharedCourse &course : courses)
                all.push_back(course.get());
            static_cast<void>(termRows(all));
        };
    });
    grow("sorting students by name", 500, [](std::int64_t size) {
        const auto rows = std::make_shared<RosterRows>(RosterView{.rows = courseOf(1, size)->rows});
        return [rows] {
            static_cast<void>(
                rows->shown({.chip = RosterChip::everyone, .sort = RosterSort::student}));
        };
    });
    grow("filtering students by a word", 500, [](std::int64_t size) {
        const auto rows = std::make_shared<RosterRows>(RosterView{.rows = courseOf(1, size)->rows});
        return [rows] {
            static_cast<void>(rows->shown({.chip = RosterChip::everyone, .typed = "ent 77"}));
        };
    });
    grow("preparing to find students", 500, [](std::int64_t size) {
        std::vector<FindEntry> entries;
        for (std::int64_t id = 0; id < size; ++id)
            entries.push_back({.title = fmt::format("Ana Student {}", id), .id = id});
        return [entries] { static_cast<void>(FindIndex(entries)); };
    });
    grow("finding a student", 500, [](std::int64_t size) {
        std::vector<FindEntry> entries;
        for (std::int64_t id = 0; id < size; ++id)
            entries.push_back({.title = fmt::format("Ana Student {}", id), .id = id});
        return [index = FindIndex(entries)] { static_cast<void>(index.find("an st")); };
    });
    grow("all cards of the dashboard, in courses", 10, [](std::int64_t size) {
        const auto home = std::make_shared<Home>();
        home->stores.history.fill(historyOf(size));
        std::vector<SharedCourse> courses;
        for (std::int64_t id = 1; id <= size; ++id)
            courses.push_back(courseOf(id, 50));
        return [home, courses] {
            CourseSummaries summaries(home->stores, home->trends);
            DashboardTerm term;
            setCourses(term, courses, summaries, home->stores, now);
        };
    });
    grow("one changed card, in courses", 10, [](std::int64_t size) {
        const auto home = std::make_shared<Home>();
        home->stores.history.fill(historyOf(size));
        std::vector<SharedCourse> courses;
        for (std::int64_t id = 1; id <= size; ++id)
            courses.push_back(courseOf(id, 50));
        const auto summaries = std::make_shared<CourseSummaries>(home->stores, home->trends);
        return [home, courses, summaries, changed = courses.front()]() mutable {
            courses.front() = std::make_shared<const ScoredCourse>(*changed);
            DashboardTerm term;
            setCourses(term, courses, *summaries, home->stores, now);
            summaries->keep(courses);
        };
    });
}
