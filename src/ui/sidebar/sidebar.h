// The list of terms and courses at the left of the window.
#pragma once

#include "app/courses/courseselection.h"
#include "preferences/userdefaults.h"

#include <QTreeView>

class QLabel;

namespace ellwynd {

class Appearance;
class MainWindowController;
class SidebarModel;

/// Shows the controller's terms and follows its selection; a click or a key selects. Which terms
/// are open is remembered.
class Sidebar : public QWidget {
    Q_OBJECT

  public:
    Sidebar(
        MainWindowController &controller, UserDefaults &defaults, const Appearance &appearance,
        QWidget *parent = nullptr);

    [[nodiscard]] QTreeView *list() const { return tree; }

    /// Shows the banner of an update; an empty version takes it away.
    void showUpdate(const QString &version);

  private:
    void reload();
    void restoreExpansion();
    void rememberExpansion();
    void showStatus();

    MainWindowController &controller;
    UserDefaults &defaults;
    SidebarModel *model;
    QTreeView *tree;
    QLabel *updateBanner;
    QLabel *status;
    /// Set while this view itself moves the tree's state.
    bool settingState = false;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
