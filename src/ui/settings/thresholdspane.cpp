#include "ui/settings/thresholdspane.h"

#include "ui/support/thresholdeditors.h"

#include <QSignalBlocker>

namespace ellwynd {

ThresholdsPane::ThresholdsPane(UserDefaults &defaults, const Appearance &appearance)
    : SettingsPane(QStringLiteral("Risk Thresholds"), defaults, appearance),
      passing(passingScoreEditor(QStringLiteral("Default passing score, percent"), this)),
      inactivity(inactivityEditor(
          QStringLiteral("Default inactivity window, days behind the class"), this)) {
    addNote(QStringLiteral(
        "Defaults used when scoring a course's at-risk students. Changes apply to the course "
        "currently shown and to courses loaded afterward."));
    addRow(QStringLiteral("Passing score"), passing);
    addRow(QStringLiteral("Inactivity window"), inactivity, QStringLiteral("days"));
    connect(passing, &QDoubleSpinBox::valueChanged, this, [this](double value) {
        this->defaults.set(preferences::defaultPassingScore, value);
    });
    connect(inactivity, &QSpinBox::valueChanged, this, [this](int value) {
        this->defaults.set(preferences::defaultInactivityDays, std::int64_t{value});
    });
    ThresholdsPane::showPreferences();
}

void ThresholdsPane::showPreferences() {
    const QSignalBlocker quiet[] = {QSignalBlocker(passing), QSignalBlocker(inactivity)};
    passing->setValue(defaults.value(preferences::defaultPassingScore));
    inactivity->setValue(int(std::clamp<std::int64_t>(
        defaults.value(preferences::defaultInactivityDays), inactivity->minimum(),
        inactivity->maximum())));
}

} // namespace ellwynd
