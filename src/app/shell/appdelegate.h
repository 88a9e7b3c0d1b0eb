// Handles the start of the program, clicks on links and notices, and the switch of the sample mode.
#pragma once

#include "preferences/userdefaults.h"

#include <QObject>
#include <QStringList>

#include <functional>

namespace ellwynd {

class ApplicationService;
class MainWindowController;
class Updater;

/// Forwards requests to open a course to the main window's controller. What must be shown is
/// announced by signals. Used on the main thread.
class AppDelegate : public QObject {
    Q_OBJECT

  public:
    /// Starts a new instance of the program without launch arguments. Returns an error message;
    /// absent on success.
    using NewInstance = std::function<std::optional<std::string>()>;

    /// The arguments must outlive this object.
    AppDelegate(
        UserDefaults &defaults, MainWindowController &controller, ApplicationService &service,
        Updater &updater, NewInstance newInstance);

    /// Loads the courses, opens the links that the program was started with, and starts the update
    /// checks.
    void launch(const QStringList &links);

    [[nodiscard]] bool isSampleMode() const;

  public Q_SLOTS:
    /// Raises the window and opens the course of the last valid link, as if the links were clicked
    /// one after the other. Does nothing if no link names a course.
    /// @param activationToken the XDG activation token; may be empty.
    void openLinks(const QStringList &links, const QString &activationToken = {});
    /// Raises the window after a click on a notice, and opens the notice's course.
    /// @param courseID absent if the notice is about several courses.
    /// @param activationToken the XDG activation token; may be empty.
    void openNotice(std::optional<std::int64_t> courseID, const QString &activationToken = {});
    /// Restarts the program in the other mode: in the sample college or, if this run shows the
    /// sample college, with the teacher's own courses. If no new instance can be started, the
    /// preference is restored and this run continues.
    void switchSampleMode();

  Q_SIGNALS:
    /// The window must be raised. The XDG activation token may be empty.
    void activationRequested(const QString &activationToken);
    void relaunchDidFail(const QString &message);
    /// A new instance was started, and this one must quit.
    void terminationRequested();

  private:
    UserDefaults &defaults;
    MainWindowController &controller;
    ApplicationService &service;
    Updater &updater;
    NewInstance newInstance;
};

} // namespace ellwynd
