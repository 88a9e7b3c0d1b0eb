// The writing of messages to several students, one at a time.
#pragma once

#include "app/messages/contactmarks.h"
#include "app/shell/stores.h"
#include "app/undo/undostack.h"
#include "memory/outreach.h"

#include <QObject>

namespace ellwynd {

/// Students, the message to each of them, and what was copied. Exactly one message at a time is on
/// the clipboard, unless the teacher copies all together. Used on the main thread.
///
/// Each copy records a contact and is a step of the undo stack; when everything is done, the steps
/// become one. The students' figures are those of the time when the session began.
class WriteSession : public QObject {
    Q_OBJECT

  public:
    enum class Progress { waiting, copied, skipped };
    struct Student {
        RiskRow row;
        Progress progress = Progress::waiting;
        /// The message as the teacher edited it, or as it was copied; absent while it is that of
        /// the template.
        std::optional<std::string> text;
        /// The template of a message that was edited or copied; empty before.
        std::string templateID;
    };
    enum class CopyResult {
        copied,
        /// There is no text to copy.
        empty,
        /// All messages together are longer than `maxJoinedSize`.
        tooLong,
        clipboardFailed,
    };
    /// Of messages that are copied together, in bytes.
    static constexpr std::size_t maxJoinedSize = 16UL * 1024 * 1024;

    /// @param rows the students, each once, in the order of the roster.
    /// The references must outlive this object. Steps of the stack may outlive it.
    WriteSession(
        const SharedList<RiskRow> &rows, UserDefaults &defaults, Stores &stores, UndoStack &undo,
        ClipboardWriter clipboard, Clock now = systemNow);

    [[nodiscard]] const std::vector<Student> &students() const { return all; }
    /// The index of the student whose message is shown; absent when everything is done.
    [[nodiscard]] std::optional<std::size_t> current() const { return shown; }
    /// Null when everything is done. Valid until the next change.
    [[nodiscard]] const Student *currentStudent() const;
    /// Does nothing for an index out of range.
    void setCurrent(std::size_t index);
    /// Adds students who are not in the session yet. The first of them is shown; if there is none,
    /// the first of these students.
    void add(const SharedList<RiskRow> &rows);

    /// The message to the current student; empty when everything is done.
    [[nodiscard]] std::string text() const;
    /// Replaces the message to the current student.
    void edit(const std::string &text);
    /// The template of the current student's message: the one that the teacher chose, or else the
    /// last one of the course, or else the first. Null if there are no templates.
    [[nodiscard]] const MessageTemplate *message() const;
    /// Fills in a template for the current student, and for all others whose message was not
    /// edited and not copied.
    void chooseTemplate(const std::string &id);

    /// Copies the current student's message, records the contact, and shows the next student who
    /// is waiting. Nothing changes unless the message was copied.
    CopyResult copyAndNext();
    /// Shows the next student who is waiting. A current student who was waiting is skipped.
    void skip();
    /// Copies the messages of all who are waiting, one below the other, and records the contacts.
    /// Empty messages are left out, and those students wait further.
    CopyResult copyAll();
    /// Makes one step of the session's latest steps. Called when the teacher stops writing.
    void finish();
    /// Whether the last change was a copy of this session, so that `UndoStack::undo` takes it back.
    [[nodiscard]] bool canUndo() const;

    [[nodiscard]] std::size_t count(Progress progress) const;
    /// How many students are waiting whose message was edited.
    [[nodiscard]] std::size_t uncopiedEdits() const;
    /// The names of the students whose messages are on the clipboard; empty if it has something
    /// else.
    [[nodiscard]] const std::vector<std::string> &onClipboard() const { return clipboardNames; }
    /// Another program, or another command, has replaced the clipboard.
    void clipboardDidChange();
    /// What happened since the last contact with the current student; absent if there was none.
    [[nodiscard]] std::optional<OutreachOutcome> outreach() const;

  Q_SIGNALS:
    void sessionDidChange();
    /// The students are no longer the teacher's: another account was connected.
    void sessionDidExpire();

  private:
    struct Step {
        UndoStack::ID id = 0;
        ContactChange change;
    };

    [[nodiscard]] std::string textOf(const Student &student) const;
    [[nodiscard]] const MessageTemplate *messageOf(const Student &student) const;
    void showNext();
    /// Marks the students as copied, and records the contacts.
    void didCopy(const std::vector<std::size_t> &indices);
    void push(ContactChange change);
    void takeBack(const ContactChange &change);

    std::vector<Student> all;
    std::optional<std::size_t> shown;
    /// Of the teacher's last choice in this session; empty before.
    std::string chosenTemplate;
    std::vector<std::string> clipboardNames;
    /// This session's steps that were not undone, oldest first.
    std::vector<Step> steps;
    UserDefaults &defaults;
    Stores &stores;
    UndoStack &undo;
    ClipboardWriter clipboard;
    Clock now;
};

} // namespace ellwynd
