#include "app/dashboard/widgetnames.h"

#include "preferences/userdefaults.h"

namespace ellwynd {

bool feedsWidgets(const UserDefaults &defaults) {
    return !defaults.value(preferences::sampleData) || defaults.value(preferences::sampleWidgets);
}

WidgetNames::WidgetNames(
    UserDefaults &defaults, const CourseList &courseList, const WidgetSnapshotWriter &widgets)
    : defaults(defaults),
      courseList(courseList),
      widgets(widgets),
      observing(defaults.observe([this](std::string_view key) {
          if (key == preferences::widgetsHideCourseNames.name)
              update();
      })) {
    update();
}

void WidgetNames::update() const {
    if (!feedsWidgets(defaults))
        return;
    if (defaults.value(preferences::widgetsHideCourseNames))
        return widgets.hideNames();
    std::map<std::int64_t, std::string> names;
    for (const Course &course : courseList.latest())
        names.emplace(course.id, displayName(course));
    if (!names.empty())
        widgets.showNames(names);
}

} // namespace ellwynd
