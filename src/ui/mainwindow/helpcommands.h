// What the commands of the Help menu do.
#pragma once

#include "preferences/userdefaults.h"

#include <QObject>

class QWidget;

namespace ellwynd {

class Appearance;
class HelpWindow;
class MainMenus;

/// Opens the help, the release notes, the about box and a mail for feedback.
class HelpCommands : public QObject {
    Q_OBJECT

  public:
    /// Connects the commands.
    /// @param window owns the windows that they open; the other arguments must outlive it.
    HelpCommands(
        const MainMenus &menus, UserDefaults &defaults, const Appearance &appearance,
        QWidget &window);

  private:
    [[nodiscard]] HelpWindow &help();
    void showAbout();
    void sendFeedback();

    const MainMenus &menus;
    UserDefaults &defaults;
    const Appearance &appearance;
    QWidget &window;
    HelpWindow *helpWindow = nullptr;
};

} // namespace ellwynd
