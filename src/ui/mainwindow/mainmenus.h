// The main window's menus.
#pragma once

#include "help/helpbook.h"
#include "preferences/userdefaults.h"

#include <QObject>

class QAction;
class QActionGroup;
class QMenu;
class QMenuBar;

namespace ellwynd {

/// What decides which commands can work.
struct CommandState {
    /// A roster is shown in the middle, is being loaded there, or could not be.
    bool rosterPane = false;
    /// Its rows are there, and whether they are one course's.
    bool rosterShown = false;
    bool oneCourse = false;
    bool anyStudents = false;
    bool anySelected = false;
    bool oneSelected = false;
    bool remembersContacts = false;
    /// Whether the teacher wants no details beside a roster.
    bool detailsHidden = false;
};

/// Every command of the program, where people look for it and with its key. The owner of the menus
/// connects the commands; those that only toggle a preference are connected here.
class MainMenus : public QObject {
    Q_OBJECT

  public:
    MainMenus(QMenuBar &bar, UserDefaults &defaults);

    /// Enables each command exactly when it can work.
    void update(const CommandState &state);

    /// Menu by menu, the commands that have a key.
    [[nodiscard]] std::vector<ShortcutGroup> shortcuts() const;

    // File
    QAction *refreshAll = nullptr;
    QAction *refreshRoster = nullptr;
    QAction *exportCSV = nullptr;
    QAction *exportMarkdown = nullptr;
    QAction *sampleMode = nullptr;
    QAction *settings = nullptr;
    QAction *quit = nullptr;
    // Edit
    QAction *findStudent = nullptr;
    // View
    QAction *showDashboard = nullptr;
    QAction *hideDetails = nullptr;
    QAction *zoomIn = nullptr;
    QAction *zoomOut = nullptr;
    QAction *actualSize = nullptr;
    // Course
    QAction *missingWork = nullptr;
    QAction *thresholds = nullptr;
    QAction *courseIcon = nullptr;
    QAction *copySetup = nullptr;
    QAction *openCourse = nullptr;
    // Student
    /// To be filled when it is about to show.
    QMenu *copyMessage = nullptr;
    QAction *markContacted = nullptr;
    QAction *openGrades = nullptr;
    // Help
    QAction *help = nullptr;
    QAction *keyboardShortcuts = nullptr;
    QAction *whatsNew = nullptr;
    /// Not there in a copy of the program without an address for it.
    QAction *sendFeedback = nullptr;
    /// Hidden at first, since not every copy of the program can look for updates.
    QAction *checkForUpdates = nullptr;
    QAction *about = nullptr;

  private:
    void makeFileMenu();
    void makeViewMenu();
    void makeInsightMenu(QMenu &view);
    void makeCourseMenus();
    void makeHelpMenu();
    void showPreference(std::string_view key);
    void showTextScale();

    QMenuBar &bar;
    UserDefaults &defaults;
    QAction *compactRows = nullptr;
    QActionGroup *insightModes = nullptr;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
