#include "ui/sheets/thresholdssheet.h"

#include "ui/support/appearance.h"
#include "ui/support/thresholdeditors.h"
#include "ui/support/thresholdeffectview.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <utility>

namespace ellwynd {

ThresholdsSheet::ThresholdsSheet(
    std::int64_t courseID, const std::string &courseName, const RosterCache &rosters,
    UserDefaults &defaults, const Appearance &appearance, QWidget *parent)
    : Sheet(
          QStringLiteral("Risk Thresholds"), QStringLiteral("Risk Thresholds"), appearance, parent),
      courseID(courseID),
      defaults(defaults),
      summary(plainLabel(this, true)),
      effect(new ThresholdEffectView(rosters, appearance, this)),
      ownPassing(new QCheckBox(QStringLiteral("Use a different passing score"), this)),
      passing(passingScoreEditor(QStringLiteral("Passing score for this course, percent"), this)),
      ownInactivity(new QCheckBox(QStringLiteral("Use a different inactivity window"), this)),
      inactivity(inactivityEditor(
          QStringLiteral("Inactivity window for this course, days behind the class"), this)),
      followDefaults(new QPushButton(QStringLiteral("Use Defaults"), this)),
      observing(defaults.observe([this](std::string_view) { showThresholds(); })) {
    auto *course = new ElidedLabel(this);
    course->setProperty("secondary", true);
    course->setFullText(qstring(courseName));

    auto *groupTitle =
        secondaryLabel(this, QStringLiteral("Current thresholds for this course"), false);
    auto *group = new QFrame(this);
    group->setObjectName(QStringLiteral("card"));
    group->setAccessibleName(groupTitle->text());
    auto *grid = new QGridLayout(group);
    const int inset = appearance.px(16);
    grid->setContentsMargins(inset, inset, inset, inset);
    grid->setVerticalSpacing(appearance.px(10));
    grid->setHorizontalSpacing(appearance.px(12));
    auto *unit = plainLabel(group);
    unit->setText(QStringLiteral("days behind the class"));
    grid->addWidget(ownPassing, 0, 0);
    grid->addWidget(passing, 0, 1);
    grid->addWidget(ownInactivity, 1, 0);
    grid->addWidget(inactivity, 1, 1);
    grid->addWidget(unit, 1, 2);
    grid->setColumnStretch(2, 1);

    auto *finished = new QPushButton(QStringLiteral("Done"), this);
    finished->setDefault(true);
    followDefaults->setAutoDefault(false);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(followDefaults);
    buttons->addStretch(1);
    buttons->addWidget(finished);

    column().addWidget(course);
    column().addSpacing(appearance.px(4));
    column().addWidget(groupTitle);
    column().addWidget(group);
    column().addWidget(summary);
    column().addWidget(effect);
    column().addSpacing(appearance.px(8));
    column().addLayout(buttons);
    summary->setMinimumWidth(appearance.px(420));

    connect(ownPassing, &QCheckBox::toggled, this, &ThresholdsSheet::writePassing);
    connect(passing, &ThresholdEditor::valueChanged, this, &ThresholdsSheet::writePassing);
    connect(ownInactivity, &QCheckBox::toggled, this, &ThresholdsSheet::writeInactivity);
    connect(inactivity, &ThresholdEditor::valueChanged, this, &ThresholdsSheet::writeInactivity);
    connect(followDefaults, &QPushButton::clicked, this, [this] {
        edit.add(this->defaults, useDefaults(this->defaults, this->courseID));
    });
    connect(finished, &QPushButton::clicked, this, &QDialog::accept);
    showThresholds();
    effect->begin(courseThresholds(defaults, courseID), courseID);
}

void ThresholdsSheet::showThresholds() {
    const CourseThresholds thresholds = courseThresholds(defaults, courseID);
    const QSignalBlocker quiet[] = {QSignalBlocker(ownPassing), QSignalBlocker(ownInactivity)};
    ownPassing->setChecked(thresholds.passingOverridden);
    passing->setEnabled(thresholds.passingOverridden);
    passing->showSaved(thresholds.passingScore);
    ownInactivity->setChecked(thresholds.inactivityOverridden);
    inactivity->setEnabled(thresholds.inactivityOverridden);
    inactivity->showSaved(double(thresholds.inactivityDays));
    followDefaults->setEnabled(thresholds.anyOverridden());
    summary->setText(qstring(thresholdsSummary(thresholds)));
}

void ThresholdsSheet::showEffect() {
    effect->showEffect(courseThresholds(defaults, courseID));
}

void ThresholdsSheet::writePassing() {
    write(
        courseSettings::passingScore,
        ownPassing->isChecked() ? std::optional<PreferenceValue>(passing->value()) : std::nullopt);
}

void ThresholdsSheet::writeInactivity() {
    write(
        courseSettings::inactivityDays,
        ownInactivity->isChecked()
            ? std::optional<PreferenceValue>(std::int64_t(inactivity->value()))
            : std::nullopt);
}

void ThresholdsSheet::write(std::string_view suffix, std::optional<PreferenceValue> value) {
    edit.add(
        defaults, defaults.update({{courseSettings::key(courseID, suffix), std::move(value)}}));
}

void ThresholdsSheet::done(int result) {
    Sheet::done(result);
    Q_EMIT editDidEnd(std::exchange(edit, {}));
}

} // namespace ellwynd
