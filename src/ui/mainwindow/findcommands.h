// The Find command.
#pragma once

#include "app/courses/courseselection.h"
#include "app/find/findcontents.h"
#include "risk/riskrow.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <future>
#include <vector>

class QAction;
class QWidget;

namespace ellwynd {

class Appearance;
class FindPanel;
class MainMenus;
class MainWindowController;

/// Finds students, courses, terms and commands of what is in memory; nothing is read from Canvas.
class FindCommands : public QObject {
    Q_OBJECT

  public:
    /// Connects the command.
    /// @param window owns this object; the other arguments must outlive it.
    FindCommands(
        MainWindowController &controller, const MainMenus &menus, const Appearance &appearance,
        QWidget &window);

  Q_SIGNALS:
    void studentRequested(const ellwynd::StudentKey &student);
    void rosterRequested(const ellwynd::Selection &selection);

  protected:
    /// Watches the application for the command's keys.
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void open();
    /// Everything that can be found now, for the next index.
    [[nodiscard]] FindContents contents();
    void updateIndex();
    void prepare(FindContents found);
    void indexDidEnd();
    void setIndex(FindIndex index);
    void openEntry(const FindEntry &entry);
    void coursesDidChange();
    void updateSoon();

    MainWindowController &controller;
    const MainMenus &menus;
    const Appearance &appearance;
    QWidget &window;
    FindPanel *panel = nullptr;
    /// The commands in the index, by their positions.
    std::vector<QPointer<QAction>> commands;
    /// Those in the index that is prepared.
    std::vector<QPointer<QAction>> nextCommands;
    /// One update for the changes of a moment.
    QTimer update;
    /// Valid while a thread prepares the index of many entries.
    std::future<FindIndex> preparing;
    /// Whether the entries have changed since its start.
    bool isOutdated = false;
};

} // namespace ellwynd
