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

/// The state that decides which commands are enabled.
struct CommandState {
    /// A roster is displayed, loading, or failed to load.
    bool rosterPane = false;
    /// The rows of a roster are displayed.
    bool rosterShown = false;
    /// The roster is one course's, not a term's.
    bool oneCourse = false;
    bool anyStudents = false;
    bool anySelected = false;
    bool oneSelected = false;
    /// A selected student has a contact mark.
    bool anyContacted = false;
    bool remembersContacts = false;
    /// The teacher has hidden the details pane.
    bool detailsHidden = false;
};

/// Every command of the program with its shortcut. The owner connects the commands, except those
/// that only set a preference, which are connected here.
class MainMenus : public QObject {
    Q_OBJECT

  public:
    MainMenus(QMenuBar &bar, UserDefaults &defaults);

    /// Enables exactly the commands that can run in this state.
    void update(const CommandState &state);

    /// Names the change that the Undo command undoes; empty for none.
    void showUndo(const std::string &change) const;

    /// The commands that have a shortcut, grouped by menu. Names of students are left out.
    [[nodiscard]] std::vector<ShortcutGroup> shortcuts() const;

    /// A command as it is found by its name.
    struct Found {
        QAction *action;
        /// Without a mnemonic.
        std::string text;
        /// The menu and the keys: "Student · Ctrl+J".
        std::string place;
    };
    /// The commands that can run now, in the order of the menus, except for the command that finds
    /// them.
    [[nodiscard]] std::vector<Found> enabledCommands() const;

    // File
    QAction *refreshAll = nullptr;
    QAction *refreshRoster = nullptr;
    QAction *exportCSV = nullptr;
    QAction *exportMarkdown = nullptr;
    QAction *print = nullptr;
    QAction *sampleMode = nullptr;
    QAction *settings = nullptr;
    QAction *quit = nullptr;
    // Edit
    QAction *undo = nullptr;
    /// Finds students, courses, terms and commands.
    QAction *find = nullptr;
    /// Filters the roster.
    QAction *findStudent = nullptr;
    // View
    QAction *showDashboard = nullptr;
    /// Filled by the owner on `aboutToShow`.
    QMenu *sortBy = nullptr;
    QAction *hideDetails = nullptr;
    QAction *zoomIn = nullptr;
    QAction *zoomOut = nullptr;
    QAction *actualSize = nullptr;
    // Course
    QAction *missingWork = nullptr;
    QAction *thresholds = nullptr;
    QAction *lookBack = nullptr;
    QAction *courseIcon = nullptr;
    QAction *copySetup = nullptr;
    QAction *openCourse = nullptr;
    // Student
    QAction *write = nullptr;
    /// Filled by the owner on `aboutToShow`.
    QMenu *copyMessage = nullptr;
    QAction *markContacted = nullptr;
    QAction *removeContactMark = nullptr;
    QAction *openGrades = nullptr;
    // Help
    QAction *help = nullptr;
    QAction *keyboardShortcuts = nullptr;
    QAction *whatsNew = nullptr;
    /// Hidden in a build without a feedback address.
    QAction *sendFeedback = nullptr;
    /// Hidden until the owner knows that this build checks for updates.
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
