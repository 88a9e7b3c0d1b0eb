// Creates the objects of the program and connects them.
#pragma once

#include "base/date.h"
#include "base/elapsedtime.h"
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

/// The folders, the desktop services and the launch arguments that the program runs with.
struct ApplicationEnvironment {
    /// Preferences set for this run only.
    PreferenceMap launchArguments;
    std::filesystem::path preferencesFile;
    /// Folder of the history, contacts and templates.
    std::filesystem::path data;
    /// Folder of data that applies to this machine only.
    std::filesystem::path state;
    /// Folder that the program shares with its widgets.
    std::filesystem::path widgetContainer;
    std::shared_ptr<SecretStore> secrets;
    std::unique_ptr<UserNotifications> notifications;
    /// Makes the widgets reload their file.
    std::function<void()> reloadWidgets = [] {};
    /// Whether the desktop is dark at startup, for the appearance "automatic".
    bool desktopIsDark = false;
    /// The same on a desktop that has no preference.
    bool isDarkWithoutPreference = false;
    /// The time of day, and the time for ages. Those of the machine unless time is simulated.
    Clock clock = systemNow;
    ElapsedClock elapsed = elapsedNow;
    /// Starts a new instance after a switch of the sample mode. Returns an error message; absent on
    /// success.
    std::function<std::optional<std::string>()> newInstance = [] { return std::nullopt; };
};

/// Owns the stores, the controllers and the main window. Nothing is read from Canvas before
/// `launch`. Create it on the main thread after the QApplication, one at a time.
class Application {
  public:
    /// @param service must outlive this object; it need not have been started.
    Application(ApplicationEnvironment environment, ApplicationService &service);
    ~Application();
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

    /// Once the event loop runs, shows the window unless the teacher wants to start in the
    /// background, loads the courses and opens the links.
    void launch(const QStringList &links);
    /// Starts to follow preferences changed by other processes, the desktop's colour scheme,
    /// wake-up, the network, and the program's activation, and starts the half-hour timer.
    void followDesktop();

    [[nodiscard]] UserDefaults &defaults();
    [[nodiscard]] Appearance &appearance();
    [[nodiscard]] MainWindowController &controller();
    /// Makes the window at the first call. It is hidden until `launch` has shown it.
    [[nodiscard]] MainWindow &window();

  private:
    struct Objects;
    std::unique_ptr<Objects> objects;
};

} // namespace ellwynd
