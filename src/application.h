// The program, wired: every object of a window's life, made once and in order.
#pragma once

#include "preferences/preferencevalue.h"

#include <QStringList>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ellwynd {

class AppDelegate;
class Appearance;
class ApplicationService;
class MainWindow;
class MainWindowController;
class SecretStore;
class UserDefaults;
class UserNotifications;
struct Stores;

/// What the program is started with: its folders, its place on the desktop and what it was told.
struct ApplicationEnvironment {
    /// The values forced for this run.
    PreferenceMap launchArguments;
    std::filesystem::path preferencesFile;
    /// Histories, contacts and templates.
    std::filesystem::path data;
    /// What is true of this machine alone.
    std::filesystem::path state;
    /// What the program shares with its widgets.
    std::filesystem::path widgetContainer;
    std::shared_ptr<SecretStore> secrets;
    std::unique_ptr<UserNotifications> notifications;
    /// Asks the widgets to draw themselves again.
    std::function<void()> reloadWidgets = [] {};
    /// What the appearance "automatic" stands for at the start.
    bool desktopIsDark = false;
    /// Starts the program anew for the other mode; answers what went wrong, or nothing.
    std::function<std::optional<std::string>()> newInstance = [] { return std::nullopt; };
};

/// Makes the stores, the controllers and the main window, and connects them. The window is not yet
/// shown, and nothing is read from Canvas before `launch`. One at a time, on the main thread, after
/// the QApplication.
class Application {
  public:
    /// @param service must outlive this object; it need not have been started.
    Application(ApplicationEnvironment environment, ApplicationService &service);
    ~Application();
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

    /// Shows the window, then loads the courses and opens the links as soon as the event loop runs.
    void launch(const QStringList &links);
    /// Follows what happens outside the program: other processes' preferences, the desktop's
    /// colours, waking up, coming to the front, and the half-hour timer.
    void followDesktop();

    [[nodiscard]] UserDefaults &defaults();
    [[nodiscard]] Appearance &appearance();
    [[nodiscard]] MainWindowController &controller();
    [[nodiscard]] MainWindow &window();

  private:
    struct Objects;
    std::unique_ptr<Objects> objects;
};

} // namespace ellwynd
