// The teacher's actions on the roster on screen.
#pragma once

#include "app/messages/contactmarks.h"
#include "app/roster/rosterview.h"
#include "app/undo/undostack.h"
#include "base/referencedate.h"
#include "outputs/export/rosterexport.h"
#include "outputs/messages/messagetemplate.h"

#include <QObject>

#include <filesystem>

namespace ellwynd {

/// A roster as a file.
struct RosterExport {
    /// Suggested in the save dialog.
    std::string fileName;
    std::string text;
};

/// Fills in messages to students and records the contacts, exports rosters, and opens Canvas pages.
/// The clipboard, alerts and the browser are left to the receivers of the signals. Used on the main
/// thread.
class RosterActions : public QObject {
    Q_OBJECT

  public:
    /// The references must outlive this object.
    RosterActions(
        const RosterView &roster, const UserDefaults &defaults, Stores &stores, UndoStack &undo,
        Clock now);

    // Marks and their removal are steps of the undo stack.
    /// Records a contact with each of the students, all with the same time.
    void markContacted(const SharedList<RiskRow> &students);
    /// Removes the contacts with the students; those who have none are ignored.
    void removeContactMarks(const SharedList<RiskRow> &students);
    /// Fills in a template for each of the students, copies the messages together, records a
    /// contact with each, and requests a note. If they were not copied, no contact is recorded.
    /// Does nothing without students.
    void copyMessages(
        const MessageTemplate &message, const SharedList<RiskRow> &students,
        const ClipboardWriter &clipboard);

    /// The roster on screen as a file to save.
    [[nodiscard]] RosterExport exported(ExportFormat format) const;
    /// Replaces the file at `path`, and reports the result by a signal.
    void saveExport(const RosterExport &file, const std::filesystem::path &path);

    // Request to open a Canvas page in the browser. Without a valid address nothing is opened, and
    // an error is logged.
    void openCourse(std::int64_t courseID);
    void openGrades(std::int64_t courseID, std::int64_t studentID);
    void openAssignment(std::int64_t courseID, std::int64_t assignmentID);
    /// Logs whether the browser opened a page.
    void pageDidOpen(const QString &page, bool opened) const;

  Q_SIGNALS:
    /// A note about what was done, or why not, should be shown.
    void noteRequested(const QString &note);
    void exportDidEnd(const QString &fileName);
    void exportDidFail(const QString &why);
    /// The receiver opens the URL and calls `pageDidOpen` with this name of the page.
    void openURLRequested(const QString &url, const QString &page);
    /// A Canvas page was requested in the sample college, which has none.
    void samplePageRequested();

  private:
    void mark(const SharedList<RiskRow> &students, UndoTexts texts);
    void pushContacts(ContactChange change, UndoTexts texts);
    void
    open(const std::optional<std::string> &url, std::string_view owner, const std::string &page);
    [[nodiscard]] std::string canvasAddress() const;

    const RosterView &roster;
    const UserDefaults &defaults;
    Stores &stores;
    UndoStack &undo;
    Clock now;
};

} // namespace ellwynd
