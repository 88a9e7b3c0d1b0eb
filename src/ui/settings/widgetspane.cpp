#include "ui/settings/widgetspane.h"

#include "ui/support/appearance.h"
#include "ui/support/labels.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QProcess>
#include <QPushButton>
#include <QSignalBlocker>

namespace ellwynd {

WidgetsPane::WidgetsPane(UserDefaults &store, const Appearance &look, Start starter)
    : SettingsPane(QStringLiteral("Widgets"), store, look),
      start(std::move(starter)),
      hideNames(new QCheckBox(QStringLiteral("Hide course names"))),
      failure(plainLabel(nullptr, true)) {
    addNote(QStringLiteral(
        "Desktop widgets show how many students of each course need attention: counts and course "
        "names, never a student. With the names hidden they say “Course 1”, “Course 2” and so on, "
        "from the next scoring pass on."));
    addWidget(hideNames);
    auto *show = new QPushButton(QStringLiteral("Show Widgets"));
    show->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    show->setAutoDefault(false);
    addWidget(show);
    failure->setProperty("attention", true);
    failure->setText(QStringLiteral("The widgets couldn’t be started."));
    addWidget(failure);
    failure->hide();

    connect(hideNames, &QCheckBox::toggled, this, [this](bool on) {
        defaults.set(preferences::widgetsHideCourseNames, on);
    });
    connect(show, &QPushButton::clicked, this, &WidgetsPane::showWidgets);
    WidgetsPane::showPreferences();
}

void WidgetsPane::showPreferences() {
    const QSignalBlocker quiet(hideNames);
    hideNames->setChecked(defaults.value(preferences::widgetsHideCourseNames));
}

void WidgetsPane::showWidgets() {
    // Widgets that are there already stay the only ones.
    failure->setHidden(
        start(QCoreApplication::applicationDirPath() + QStringLiteral("/ellwynd-widget")));
}

bool WidgetsPane::startDetached(const QString &program) {
    return QProcess::startDetached(program, {});
}

} // namespace ellwynd
