// The course names in the widget files.
#pragma once

#include "app/courses/courselist.h"
#include "outputs/snapshot/snapshotfiles.h"

namespace ellwynd {

/// Whether the widgets show the courses of this run. Those of the sample college they show only if
/// "SampleWidgets" is on.
[[nodiscard]] bool feedsWidgets(const UserDefaults &defaults);

/// Adapts the widget files to "WidgetsHideCourseNames" when it is created and when the preference
/// changes, here or in another process. Names are restored only while the course list is loaded;
/// otherwise the next pass writes them. Used on the main thread.
class WidgetNames {
  public:
    /// The arguments must outlive this object.
    WidgetNames(
        UserDefaults &defaults, const CourseList &courseList, const WidgetSnapshotWriter &widgets);

  private:
    void update() const;

    const UserDefaults &defaults;
    const CourseList &courseList;
    const WidgetSnapshotWriter &widgets;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
