#include "ui/mainwindow/statusitem.h"

#include "app/dashboard/dashboardmodel.h"
#include "theme/applicationicon.h"
#include "uikit/convert.h"

#include <QAction>

#include <fmt/format.h>

#include <set>

namespace ellwynd {

StatusItem::StatusItem(Dashboard &dashboard, UserDefaults &defaults, QObject *parent)
    : QObject(parent),
      dashboard(dashboard),
      defaults(defaults),
      observing(defaults.observe([this](std::string_view key) {
          if (key == preferences::keepRunningInBackground.name)
              update();
      })) {
    connect(&dashboard, &Dashboard::dashboardModelDidChange, this, &StatusItem::showCount);
    update();
}

void StatusItem::update() {
    const bool wanted = defaults.value(preferences::keepRunningInBackground) &&
        QSystemTrayIcon::isSystemTrayAvailable();
    if (wanted == isShown())
        return;
    if (wanted) {
        show();
    } else {
        icon.reset();
        menu.reset();
    }
    Q_EMIT isShownDidChange();
}

void StatusItem::show() {
    menu = std::make_unique<QMenu>();
    count = menu->addAction(QString());
    count->setEnabled(false);
    menu->addSeparator();
    connect(
        menu->addAction(QStringLiteral("Open Ellwynd")), &QAction::triggered, this,
        &StatusItem::windowRequested);
    connect(
        menu->addAction(QStringLiteral("Refresh All Courses")), &QAction::triggered, this,
        &StatusItem::refreshRequested);
    menu->addSeparator();
    connect(
        menu->addAction(QStringLiteral("Quit Ellwynd")), &QAction::triggered, this,
        &StatusItem::quitRequested);
    icon = std::make_unique<QSystemTrayIcon>(applicationIcon());
    icon->setContextMenu(menu.get());
    connect(
        icon.get(), &QSystemTrayIcon::activated, this,
        [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason != QSystemTrayIcon::Context)
                Q_EMIT windowRequested();
        });
    showCount();
    icon->show();
}

void StatusItem::showCount() {
    if (!isShown())
        return;
    const QString text = qstring(statusItemText(dashboard));
    count->setText(text);
    icon->setToolTip(QStringLiteral("Ellwynd: ") + text);
}

std::string statusItemText(const Dashboard &dashboard) {
    const DashboardTerm *term = dashboard.shownTerm();
    if (term == nullptr)
        return "Not scored yet";
    // A student may be at risk in several courses.
    std::set<std::int64_t> students;
    for (const DashboardStudent &student : term->students) {
        if (student.row->level == RiskLevel::atRisk)
            students.insert(student.row->id);
    }
    return fmt::format("{} at risk in {}", students.size(), term->title);
}

} // namespace ellwynd
