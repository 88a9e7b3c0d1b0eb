#include "ui/settings/widgetspane.h"

#include "base/files.h"
#include "platform/folders/directories.h"
#include "platform/session/autostart.h"
#include "platform/session/detachedprogram.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QPointer>
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

WidgetsPane::WidgetsPane(UserDefaults &defaults, const Appearance &appearance, Process process)
    : SettingsPane(QStringLiteral("Widgets"), defaults, appearance),
      process(std::move(process)),
      hideNames(new QCheckBox(QStringLiteral("Hide course names"))),
      withSession(new QCheckBox(QStringLiteral("Show the widgets when I log in"))),
      result(plainLabel(nullptr, true)) {
    addNote(QStringLiteral(
        "Desktop widgets show how many students of each course need attention: counts and course "
        "names, never a student. If course names are hidden, widgets show “Course 1”, “Course 2” "
        "and so on."));
    addWidget(hideNames);
    addWidget(withSession);
    auto *show = new QPushButton(QStringLiteral("Show Widgets"));
    show->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    show->setAutoDefault(false);
    addWidget(show);
    addWidget(result);
    result->hide();

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
    process.show([self = QPointer(this)](widgetService::Answer answer) {
        if (self)
            self->widgetsDidAnswer(answer);
    });
}

void WidgetsPane::widgetsDidAnswer(widgetService::Answer answer) {
    using widgetService::Answer;
    if (answer == Answer::silent)
        return showResult(
            QStringLiteral("The widgets are running, but do not answer. Log out and in again."),
            true);
    if (answer == Answer::notRunning) {
        if (const auto failure = process.start(widgetProgram()))
            return showResult(
                QStringLiteral("The widgets couldn’t be started. ") + qstring(*failure), true);
    }
    QString text = answer == Answer::inFront
        ? QStringLiteral("The widgets are in front of other windows until you use another window.")
        : answer == Answer::behind
        ? QStringLiteral("The widgets are shown. This desktop does not let them come to the front.")
        : QStringLiteral("The widgets were started.");
    if (defaults.value(preferences::sampleData) && !defaults.value(preferences::sampleWidgets))
        text += QStringLiteral(
            " They show your own courses: the sample college’s are not written for widgets.");
    showResult(text, false);
}

std::optional<std::string> WidgetsPane::startInFront(const QString &program) {
    return startDetached(program, {QStringLiteral("--in-front")});
}

void WidgetsPane::showEvent(QShowEvent *event) {
    SettingsPane::showEvent(event);
    const QSignalBlocker quiet(withSession);
    withSession->setChecked(autostart::isOn(directories::autostart(), widgetEntry()));
}

void WidgetsPane::setAutostart(bool on) {
    try {
        autostart::set(directories::autostart(), widgetEntry(), on);
        showResult({}, false);
    } catch (const FileError &error) {
        showResult(qstring(error.what()), true);
        const QSignalBlocker quiet(withSession);
        withSession->setChecked(!on);
    }
}

/// Shows the result of what the teacher did, or nothing.
void WidgetsPane::showResult(const QString &what, bool failed) {
    showStatus(*result, what, failed);
    result->setHidden(what.isEmpty());
}

} // namespace ellwynd
