#include "ui/mainwindow/findcommands.h"

#include "app/find/findcontents.h"
#include "app/mainwindowcontroller.h"
#include "ui/find/findpanel.h"
#include "ui/mainwindow/mainmenus.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>

#include <utility>

namespace ellwynd {

/// How long changes are collected while a scoring pass runs.
static constexpr std::chrono::milliseconds updateDelay{250};
/// More entries are prepared by a thread, so that the window does not wait.
static constexpr std::size_t preparedAtOnce = 2000;

FindCommands::FindCommands(
    MainWindowController &controller, const MainMenus &menus, const Appearance &appearance,
    QWidget &window)
    : QObject(&window),
      controller(controller),
      menus(menus),
      appearance(appearance),
      window(window) {
    connect(menus.find, &QAction::triggered, this, &FindCommands::open);
    connect(
        &controller, &MainWindowController::coursesDidChange, this,
        &FindCommands::coursesDidChange);
    connect(&controller, &MainWindowController::rosterDidChange, this, &FindCommands::updateSoon);
    connect(&controller, &MainWindowController::passDidEnd, this, &FindCommands::updateSoon);
    qApp->installEventFilter(this);
    update.setSingleShot(true);
    update.setInterval(updateDelay);
    connect(&update, &QTimer::timeout, this, [this] {
        if (panel->isVisible())
            updateIndex();
    });
}

/// Some desktops give text fields this key for deleting the rest of the line. Here it finds, from
/// every control of the window.
bool FindCommands::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto *widget = qobject_cast<const QWidget *>(watched);
        const auto *key = static_cast<const QKeyEvent *>(event);
        if (widget != nullptr && widget->window() == &window &&
            QKeySequence(key->keyCombination()) == menus.find->shortcut()) {
            event->ignore();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

void FindCommands::open() {
    if (panel == nullptr) {
        panel = new FindPanel(appearance, window);
        connect(panel, &FindPanel::entryRequested, this, &FindCommands::openEntry);
    }
    FindContents found = contents();
    const bool isMany = found.count() > preparedAtOnce;
    panel->open(isMany ? FindIndex({}, found.suggestions) : indexOf(found));
    commands = std::exchange(nextCommands, {});
    isOutdated = preparing.valid();
    if (isMany)
        prepare(std::move(found));
}

FindContents FindCommands::contents() {
    FindContents contents{
        .courses = controller.courses().known(),
        .rosters = controller.loadedRosters(),
        .suggestions = suggestionsOf(controller.dashboard().shownTerm())};
    nextCommands.clear();
    for (const MainMenus::Found &command : menus.enabledCommands()) {
        contents.commands.push_back(
            {.kind = FoundKind::command,
             .title = command.text,
             .detail = command.place,
             .id = std::int64_t(nextCommands.size())});
        nextCommands.emplace_back(command.action);
    }
    return contents;
}

void FindCommands::updateIndex() {
    FindContents found = contents();
    isOutdated = preparing.valid();
    if (found.count() > preparedAtOnce)
        prepare(std::move(found));
    else
        setIndex(indexOf(found));
}

/// The panel keeps its index until the new one is prepared, and until one that is outdated is
/// prepared again.
void FindCommands::prepare(FindContents found) {
    if (preparing.valid())
        return;
    preparing = std::async(std::launch::async, [this, found = std::move(found)] {
        FindIndex index = indexOf(found);
        QMetaObject::invokeMethod(this, &FindCommands::indexDidEnd, Qt::QueuedConnection);
        return index;
    });
}

void FindCommands::indexDidEnd() {
    FindIndex index = preparing.get();
    if (!panel->isVisible())
        return;
    if (isOutdated)
        updateIndex();
    else
        setIndex(std::move(index));
}

void FindCommands::setIndex(FindIndex index) {
    panel->setIndex(std::move(index));
    commands = std::exchange(nextCommands, {});
}

/// The list is empty after a sign-out and before another account's courses arrive.
void FindCommands::coursesDidChange() {
    if (panel != nullptr && controller.courses().isEmpty())
        panel->dismiss();
    updateSoon();
}

void FindCommands::updateSoon() {
    if (panel != nullptr && panel->isVisible())
        update.start();
}

void FindCommands::openEntry(const FindEntry &entry) {
    switch (entry.kind) {
    case FoundKind::student:
        Q_EMIT studentRequested({entry.courseID, *entry.id});
        break;
    case FoundKind::course:
        Q_EMIT rosterRequested(CourseSelection{*entry.id});
        break;
    case FoundKind::term:
        Q_EMIT rosterRequested(TermSelection{entry.id});
        break;
    case FoundKind::command:
        if (QAction *action = commands[std::size_t(*entry.id)])
            action->trigger();
        break;
    }
}

} // namespace ellwynd
