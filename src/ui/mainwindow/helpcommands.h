// The commands of the Help menu.
#pragma once

#include "preferences/userdefaults.h"

#include <QObject>

#include <string>

class QWidget;

namespace ellwynd {

class Appearance;
class HelpWindow;
class MainMenus;

/// Opens the help, the release notes, the about box and a feedback email.
class HelpCommands : public QObject {
    Q_OBJECT

  public:
    /// Connects the commands.
    /// @param window owns this object and the windows it opens; the other arguments must outlive
    /// it.
    HelpCommands(
        const MainMenus &menus, UserDefaults &defaults, const Appearance &appearance,
        QWidget &window);

    /// Opens the help on a topic, or on the first when no topic has that id.
    void showTopic(const std::string &id);

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
