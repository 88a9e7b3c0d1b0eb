#include "ui/settings/thresholdspane.h"

#include "app/undo/undotexts.h"
#include "risk/coursethresholds.h"
#include "ui/support/thresholdeditors.h"
#include "ui/support/thresholdeffectview.h"

#include <QShowEvent>

namespace ellwynd {

ThresholdsPane::ThresholdsPane(
    UserDefaults &defaults, UndoStack &undo, const RosterCache &rosters,
    const Appearance &appearance)
    : SettingsPane(QStringLiteral("Risk Thresholds"), defaults, appearance),
      passing(passingScoreEditor(QStringLiteral("Default passing score, percent"), this)),
      inactivity(inactivityEditor(
          QStringLiteral("Default inactivity window, days behind the class"), this)),
      effect(new ThresholdEffectView(rosters, appearance)),
      passingEdits(defaults, undo, undotexts::changedDefaultPassingScore()),
      inactivityEdits(defaults, undo, undotexts::changedDefaultInactivity()) {
    addNote(QStringLiteral(
        "Defaults used when scoring a course's at-risk students. Changes apply to the course "
        "currently shown and to courses loaded afterward."));
    addRow(QStringLiteral("Passing score"), passing);
    addRow(QStringLiteral("Inactivity window"), inactivity, QStringLiteral("days"));
    addWidget(effect);
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
    if (!event->spontaneous())
        effect->begin(defaultThresholds(defaults));
}

void ThresholdsPane::hideEvent(QHideEvent *event) {
    SettingsPane::hideEvent(event);
    if (!event->spontaneous())
        effect->end();
}

void ThresholdsPane::showEffect() {
    effect->showEffect(defaultThresholds(defaults));
}

void ThresholdsPane::showPreferences() {
    passing->showSaved(defaults.value(preferences::defaultPassingScore));
    inactivity->showSaved(double(defaults.value(preferences::defaultInactivityDays)));
}

} // namespace ellwynd
