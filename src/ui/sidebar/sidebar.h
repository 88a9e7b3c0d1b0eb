// The sidebar: the dashboard, terms and courses.
#pragma once

#include "app/courses/courseselection.h"
#include "app/courses/termexpansion.h"
#include "preferences/userdefaults.h"

#include <QTreeView>

class QLabel;

namespace ellwynd {

class Appearance;
class MainWindowController;
class SidebarModel;

/// Shows the controller's terms and selection; clicks and keys select. Remembers which terms are
/// expanded.
class Sidebar : public QWidget {
    Q_OBJECT

  public:
    Sidebar(
        MainWindowController &controller, UserDefaults &defaults, const Appearance &appearance,
        QWidget *parent = nullptr);

    [[nodiscard]] QTreeView *list() const { return tree; }

    /// Shows the banner of an available update; an empty version hides it.
    void showUpdate(const QString &version);

  Q_SIGNALS:
    /// The commands of a term or a course should be shown at a position of the screen.
    void menuRequested(const ellwynd::Selection &selection, const QPoint &position);

  private:
    void reload();
    [[nodiscard]] std::vector<TermExpansion> shownExpansion() const;
    void restoreExpansion();
    void rememberExpansion();
    void showStatus();

    MainWindowController &controller;
    UserDefaults &defaults;
    SidebarModel *model;
    QTreeView *tree;
    QLabel *updateBanner;
    QLabel *status;
    /// Set while this object changes the tree or saves the expansion.
    bool settingState = false;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
