// The teacher's courses, as last fetched.
#pragma once

#include "canvas/listread.h"
#include "canvas/records/termgroups.h"
#include "preferences/userdefaults.h"

#include <QObject>

namespace ellwynd {

/// The course list in memory, with what the sidebar makes of it. In the sample college the courses
/// of its older terms are added. Follows "SidebarTermLimit". Lives on the main thread.
class CourseList : public QObject {
    Q_OBJECT

  public:
    /// @param defaults must outlive this object.
    explicit CourseList(UserDefaults &defaults, Clock now = systemNow);

    /// Replaces the list by what Canvas sent; an empty one also stands for "not connected".
    /// @param cutShort why the list is incomplete; absent for a whole one.
    void set(std::vector<Course> courses, std::optional<CutShort> cutShort = std::nullopt);

    /// As fetched, without the sample college's older terms.
    [[nodiscard]] const std::vector<Course> &latest() const { return latestCourses; }
    [[nodiscard]] bool isEmpty() const { return latestCourses.empty(); }
    /// Every course that can be opened.
    [[nodiscard]] std::vector<Course> known() const;
    [[nodiscard]] bool contains(std::int64_t courseID) const;
    /// The sidebar's terms, newest first, as many as the teacher wants listed.
    [[nodiscard]] std::vector<TermGroup> sidebarTerms() const;
    /// "7 courses", with "Sample college" before it there, and a list that was cut short named so.
    [[nodiscard]] std::string statusText() const;

  Q_SIGNALS:
    void coursesDidChange();

  private:
    UserDefaults &defaults;
    Clock now;
    std::vector<Course> latestCourses;
    std::optional<CutShort> latestCutShort;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
