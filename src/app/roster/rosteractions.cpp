#include "app/roster/rosteractions.h"

#include "app/messages/messagetexts.h"
#include "app/shell/stores.h"
#include "app/undo/undotexts.h"
#include "base/files.h"
#include "base/log.h"
#include "canvas/canvaslinks.h"
#include "risk/coursethresholds.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr Log links{"links"};
constexpr Log exports{"export"};

std::vector<std::string> namesOf(const SharedList<RiskRow> &students) {
    std::vector<std::string> names;
    for (const RiskRow &row : students)
        names.push_back(row.name);
    return names;
}

} // namespace

RosterActions::RosterActions(
    const RosterView &roster, const UserDefaults &defaults, Stores &stores, UndoStack &undo,
    Clock now)
    : roster(roster), defaults(defaults), stores(stores), undo(undo), now(now) {}

void RosterActions::markContacted(const SharedList<RiskRow> &students) {
    mark(students, undotexts::markedContacted(namesOf(students)));
}

void RosterActions::mark(const SharedList<RiskRow> &students, UndoTexts texts) {
    pushContacts(noteContacts(stores.contacts, students, now()), std::move(texts));
}

void RosterActions::removeContactMarks(const SharedList<RiskRow> &students) {
    std::set<StudentKey> keys;
    for (const RiskRow &row : students)
        keys.insert(keyOf(row));
    ContactChange change = stores.contacts.removeContacts(keys);
    std::set<StudentKey> removed;
    for (const ContactChange::Entry &entry : change.entries)
        removed.insert({entry.before->courseID, entry.before->studentID});
    std::vector<RiskRow> marked;
    std::ranges::copy_if(students, std::back_inserter(marked), [&](const RiskRow &row) {
        return removed.contains(keyOf(row));
    });
    pushContacts(std::move(change), undotexts::removedMarks(namesOf(marked)));
}

void RosterActions::pushContacts(ContactChange change, UndoTexts texts) {
    if (change.entries.empty())
        return;
    undo.push(
        {.texts = std::move(texts),
         .undo = [&contacts = stores.contacts, change = std::move(change)] {
             return undoResult(contacts.undo(change), change.entries.size());
         }});
}

void RosterActions::copyMessages(
    const MessageTemplate &message, const SharedList<RiskRow> &students,
    const ClipboardWriter &clipboard) {
    if (students.empty())
        return;
    const auto courseName = roster.courseID ? std::optional{roster.title} : std::nullopt;
    const std::string text = fillAll(message, students, courseName, [this](std::int64_t courseID) {
        return courseThresholds(defaults, courseID).passingScore;
    });
    if (!clipboard(text)) {
        Q_EMIT noteRequested(QString::fromUtf8(messagetexts::clipboardFailed));
        return;
    }
    UndoTexts texts = undotexts::markedContacted(namesOf(students));
    texts.note = messagetexts::copied(students.size());
    Q_EMIT noteRequested(QString::fromStdString(texts.note));
    mark(students, std::move(texts));
    exports.info(fmt::format("Copied messages for {} student(s)", students.size()));
}

RosterExport RosterActions::exported(ExportFormat format) const {
    const Date date = now();
    const ExportSource source{
        .contacts = stores.contacts,
        .history = stores.history,
        .now = date,
        .wholeTerm = !roster.courseID};
    return {
        .fileName = exportFileName(format, roster.title, date),
        .text = exportText(format, roster.title, roster.rows, source)};
}

void RosterActions::saveExport(const RosterExport &file, const std::filesystem::path &path) {
    try {
        files::replaceForTeacher(path, file.text);
        const std::string name = path.filename().string();
        exports.info(fmt::format("Exported roster to {}", name));
        Q_EMIT exportDidEnd(QString::fromStdString(name));
    } catch (const FileError &error) {
        exports.error(fmt::format("Export failed: {}", error.what()));
        Q_EMIT exportDidFail(QString::fromStdString(error.what()));
    }
}

void RosterActions::openCourse(std::int64_t courseID) {
    const std::string course = fmt::format("course {}", courseID);
    open(canvasLinks::course(canvasAddress(), courseID), course, course);
}

void RosterActions::openGrades(std::int64_t courseID, std::int64_t studentID) {
    open(
        canvasLinks::grades(canvasAddress(), courseID, studentID), "a student",
        "a student's grades");
}

void RosterActions::openAssignment(std::int64_t courseID, std::int64_t assignmentID) {
    const std::string course = fmt::format("course {}", courseID);
    open(canvasLinks::assignment(canvasAddress(), courseID, assignmentID), course, course);
}

/// @param owner whose page it is, for the log line of a URL that cannot be built.
/// @param page the page, for the log; it identifies no student.
void RosterActions::open(
    const std::optional<std::string> &url, std::string_view owner, const std::string &page) {
    if (defaults.value(preferences::sampleData))
        Q_EMIT samplePageRequested();
    else if (!url)
        links.error(fmt::format("Couldn't build a Canvas URL for {}", owner));
    else
        Q_EMIT openURLRequested(QString::fromStdString(*url), QString::fromStdString(page));
}

void RosterActions::pageDidOpen(const QString &page, bool opened) const {
    if (opened)
        links.info(fmt::format("Opening {} in Canvas", page.toStdString()));
    else
        links.error(fmt::format("The browser did not open {}", page.toStdString()));
}

std::string RosterActions::canvasAddress() const {
    return defaults.value(preferences::canvasBaseURL);
}

} // namespace ellwynd
