// What the teacher does with the roster on screen.
#pragma once

#include "app/roster/rosterview.h"
#include "base/referencedate.h"
#include "outputs/export/rosterexport.h"
#include "outputs/messages/messagetemplate.h"

#include <QObject>

#include <filesystem>

namespace ellwynd {

/// A roster as a file.
struct RosterExport {
    /// What a save panel begins with.
    std::string fileName;
    std::string text;
};

/// Writes to students and notes it, saves rosters as files, and opens pages of Canvas. The
/// clipboard, alerts and the browser belong to who answers the signals.
class RosterActions : public QObject {
    Q_OBJECT

  public:
    /// What is handed over outlives the actions.
    RosterActions(
        const RosterView &roster, const UserDefaults &defaults, Stores &stores, Clock now);

    /// Notes a contact with each of the students, all of them at one time.
    void markContacted(const std::vector<RiskRow> &students);
    /// Fills a template for each of the students, hands the text to the clipboard and notes a
    /// contact with them.
    void copyMessages(const MessageTemplate &message, const std::vector<RiskRow> &students);

    /// The roster on screen as a file to save.
    [[nodiscard]] RosterExport exported(ExportFormat format) const;
    void saveExport(const RosterExport &file, const std::filesystem::path &path);

    /// Open a page of Canvas in the browser.
    void openCourse(std::int64_t courseID);
    void openGrades(std::int64_t courseID, std::int64_t studentID);
    void openAssignment(std::int64_t courseID, std::int64_t assignmentID);

  Q_SIGNALS:
    void copyRequested(const QString &text);
    void exportDidEnd(const QString &fileName);
    void exportDidFail(const QString &why);
    void openURLRequested(const QString &url);
    /// A page was asked for that the sample college has not.
    void samplePageRequested();

  private:
    void open(const std::optional<std::string> &url, std::string_view what, std::int64_t courseID);
    [[nodiscard]] std::string canvasAddress() const;

    const RosterView &roster;
    const UserDefaults &defaults;
    Stores &stores;
    Clock now;
};

} // namespace ellwynd
