// The teacher's courses as last fetched.
#pragma once

#include "canvas/listread.h"
#include "canvas/records/termgroups.h"
#include "preferences/userdefaults.h"

#include <QObject>

namespace ellwynd {

/// The course list in memory, and the terms that the sidebar shows of it. The sample college adds
/// courses of older terms. Follows "SidebarTermLimit". Used on the main thread.
class CourseList : public QObject {
    Q_OBJECT

  public:
    /// @param defaults must outlive this object.
    explicit CourseList(UserDefaults &defaults, Clock now = systemNow);

    /// Replaces the list. It is also empty while not connected.
    /// @param cutShort why the list is incomplete; absent for a complete list.
    void set(std::vector<Course> courses, std::optional<CutShort> cutShort = std::nullopt);

    /// The list as fetched, without the sample college's older terms.
    [[nodiscard]] const std::vector<Course> &latest() const { return latestCourses; }
    [[nodiscard]] bool isEmpty() const { return latestCourses.empty(); }
    /// Every course that can be opened.
    [[nodiscard]] std::vector<Course> known() const;
    [[nodiscard]] bool contains(std::int64_t courseID) const;
    /// The terms of the sidebar, newest first and limited by "SidebarTermLimit", then the courses
    /// without a term.
    [[nodiscard]] std::vector<TermGroup> sidebarTerms() const;
    /// "7 courses"; with the prefix "Sample college · " in sample mode, and the suffix " · list
    /// incomplete" if the list was cut short.
    [[nodiscard]] std::string statusText() const;

  Q_SIGNALS:
    void coursesDidChange();

  private:
    UserDefaults &defaults;
    Clock now;
    std::vector<Course> latestCourses;
    std::optional<CutShort> latestCutShort;
    /// The sample college's, made together with the list, since their dates depend on the clock.
    std::vector<Course> olderCourses;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
