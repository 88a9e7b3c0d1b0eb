#include "ui/settings/widgetspane.h"

#include "base/files.h"
#include "platform/folders/directories.h"
#include "platform/session/autostart.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QProcess>
#include <QPushButton>
#include <QSignalBlocker>

namespace ellwynd {

namespace {

QString widgetProgram() {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/ellwynd-widget");
}

autostart::Entry widgetEntry() {
    return {
        .fileName = "com.varnok.Ellwynd.Widget.desktop",
        .name = "Ellwynd Widget",
        .program = widgetProgram().toStdString()};
}

} // namespace

WidgetsPane::WidgetsPane(UserDefaults &defaults, const Appearance &appearance, Start start)
    : SettingsPane(QStringLiteral("Widgets"), defaults, appearance),
      start(std::move(start)),
      hideNames(new QCheckBox(QStringLiteral("Hide course names"))),
      withSession(new QCheckBox(QStringLiteral("Show the widgets when I log in"))),
      failure(plainLabel(nullptr, true)) {
    addNote(QStringLiteral(
        "Desktop widgets show how many students of each course need attention: counts and course "
        "names, never a student. If course names are hidden, widgets show “Course 1”, “Course 2” "
        "and so on, from the next scoring pass on."));
    addWidget(hideNames);
    addWidget(withSession);
    auto *show = new QPushButton(QStringLiteral("Show Widgets"));
    show->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    show->setAutoDefault(false);
    addWidget(show);
    failure->setProperty("attention", true);
    addWidget(failure);
    failure->hide();

    connect(hideNames, &QCheckBox::toggled, this, [this](bool on) {
        this->defaults.set(preferences::widgetsHideCourseNames, on);
    });
    connect(withSession, &QCheckBox::toggled, this, &WidgetsPane::setAutostart);
    connect(show, &QPushButton::clicked, this, &WidgetsPane::showWidgets);
    WidgetsPane::showPreferences();
}

void WidgetsPane::showPreferences() {
    const QSignalBlocker quiet(hideNames);
    hideNames->setChecked(defaults.value(preferences::widgetsHideCourseNames));
}

void WidgetsPane::showWidgets() {
    // A second process exits at once if widgets are already running.
    const bool started = start(widgetProgram());
    showFailure(started ? QString() : QStringLiteral("The widgets couldn’t be started."));
}

void WidgetsPane::showEvent(QShowEvent *event) {
    SettingsPane::showEvent(event);
    const QSignalBlocker quiet(withSession);
    withSession->setChecked(autostart::isOn(directories::autostart(), widgetEntry()));
}

void WidgetsPane::setAutostart(bool on) {
    try {
        autostart::set(directories::autostart(), widgetEntry(), on);
        showFailure({});
    } catch (const FileError &error) {
        showFailure(qstring(error.what()));
        const QSignalBlocker quiet(withSession);
        withSession->setChecked(!on);
    }
}

/// Shows what went wrong, or nothing.
void WidgetsPane::showFailure(const QString &what) {
    failure->setText(what);
    failure->setHidden(what.isEmpty());
}

bool WidgetsPane::startDetached(const QString &program) {
    return QProcess::startDetached(program, {});
}

} // namespace ellwynd
