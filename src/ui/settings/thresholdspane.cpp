#include "ui/settings/thresholdspane.h"

#include "app/explain/thresholdeffect.h"
#include "app/undo/undotexts.h"
#include "ui/support/appearance.h"
#include "ui/support/thresholdeditors.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QShowEvent>

#include <map>

namespace ellwynd {

ThresholdsPane::ThresholdsPane(
    UserDefaults &defaults, UndoStack &undo, ScoredCourses courses, const Appearance &appearance)
    : SettingsPane(QStringLiteral("Risk Thresholds"), defaults, appearance),
      passing(passingScoreEditor(QStringLiteral("Default passing score, percent"), this)),
      inactivity(inactivityEditor(
          QStringLiteral("Default inactivity window, days behind the class"), this)),
      courses(std::move(courses)),
      effectTitle(plainLabel(this, true)),
      effectNames(secondaryLabel(this)),
      passingEdits(defaults, undo, undotexts::changedDefaultPassingScore()),
      inactivityEdits(defaults, undo, undotexts::changedDefaultInactivity()) {
    addNote(QStringLiteral(
        "Defaults used when scoring a course's at-risk students. Changes apply to the course "
        "currently shown and to courses loaded afterward."));
    addRow(QStringLiteral("Passing score"), passing);
    addRow(QStringLiteral("Inactivity window"), inactivity, QStringLiteral("days"));
    effectTitle->setFont(appearance.font(1, QFont::DemiBold));
    addWidget(effectTitle);
    addWidget(effectNames);
    connect(passing, &ThresholdEditor::valueChanged, this, [this](double value) {
        passingEdits.save(preferences::defaultPassingScore.name, value);
    });
    connect(inactivity, &ThresholdEditor::valueChanged, this, [this](double value) {
        inactivityEdits.save(preferences::defaultInactivityDays.name, std::int64_t(value));
    });
    connect(passing, &ThresholdEditor::editingFinished, this, [this] { passingEdits.finish(); });
    connect(
        inactivity, &ThresholdEditor::editingFinished, this, [this] { inactivityEdits.finish(); });
    ThresholdsPane::showPreferences();
}

void ThresholdsPane::showEvent(QShowEvent *event) {
    SettingsPane::showEvent(event);
    if (event->spontaneous())
        return;
    before = courses();
    defaultsBefore = defaultThresholds(defaults);
    showEffect();
}

void ThresholdsPane::hideEvent(QHideEvent *event) {
    SettingsPane::hideEvent(event);
    if (!event->spontaneous())
        before.clear();
}

void ThresholdsPane::showEffect() {
    effectTitle->clear();
    effectNames->clear();
    const CourseThresholds now = defaultThresholds(defaults);
    if (before.empty() || now == defaultsBefore)
        return;
    ThresholdEffect effect;
    std::map<std::int64_t, SharedCourse> after;
    for (const SharedCourse &course : courses())
        after.emplace(course->course.id, course);
    for (const SharedCourse &course : before) {
        // A course that was read again meanwhile says nothing about the thresholds.
        const auto scored = after.find(course->course.id);
        if (scored != after.end() && scored->second->records == course->records)
            append(effect, thresholdEffect(*course, *scored->second));
    }
    effectTitle->setText(qstring(effectLine(effect, defaultsBefore, now)));
    effectNames->setText(qstring(effectDetails(effect)));
}

void ThresholdsPane::showPreferences() {
    passing->showSaved(defaults.value(preferences::defaultPassingScore));
    inactivity->showSaved(double(defaults.value(preferences::defaultInactivityDays)));
}

} // namespace ellwynd
