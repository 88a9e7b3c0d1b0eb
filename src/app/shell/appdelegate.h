// The shell: what the program does when it starts, when a link or a notice is clicked, and when the
// teacher enters or leaves the sample college.
#pragma once

#include "preferences/userdefaults.h"

#include <QObject>
#include <QStringList>

#include <functional>

namespace ellwynd {

class ApplicationService;
class MainWindowController;
class Updater;

/// Everything else is handed to the main window's controller; what has to be shown is announced.
class AppDelegate : public QObject {
    Q_OBJECT

  public:
    /// Starts a new instance of the program, without launch arguments, and answers what went
    /// wrong, or nothing.
    using NewInstance = std::function<std::optional<std::string>()>;

    /// The arguments must outlive this object.
    AppDelegate(
        UserDefaults &defaults, MainWindowController &controller, ApplicationService &service,
        Updater &updater, NewInstance newInstance);

    /// Loads the courses, opens what the program was started with, and begins to look for updates.
    void launch(const QStringList &links);

    [[nodiscard]] bool isSampleMode() const;

  public Q_SLOTS:
    /// Opens the last course among the links, as if they were clicked one after the other, with the
    /// window in front. When no link names a course nothing happens.
    void openLinks(const QStringList &links, const QString &activationToken = {});
    /// A click on a notice: the window comes to the front, and the notice's course is opened if it
    /// has one.
    void openNotice(std::optional<std::int64_t> courseID, const QString &activationToken = {});
    /// Restarts the program in the sample college, or with the teacher's own courses when this run
    /// shows the sample college, by preference or by launch argument. If no new instance starts,
    /// everything is as before.
    void switchSampleMode();

  Q_SIGNALS:
    /// The window is to come to the front. The desktop's activation token may be empty.
    void activationRequested(const QString &activationToken);
    void relaunchDidFail(const QString &message);
    void terminationRequested();

  private:
    UserDefaults &defaults;
    MainWindowController &controller;
    ApplicationService &service;
    Updater &updater;
    NewInstance newInstance;
};

/// Starts the program at a path as a process of its own; answers what went wrong, or nothing.
[[nodiscard]] std::optional<std::string> startDetached(const QString &program);

} // namespace ellwynd
