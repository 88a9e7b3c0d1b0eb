// The changes of the teacher that can be undone.
#pragma once

#include <QObject>
#include <QString>

#include <cstdint>
#include <deque>
#include <functional>
#include <string>

namespace ellwynd {

/// What undoing a step restored.
enum class UndoResult {
    all,
    /// Some of it had changed since, and was left as it is.
    some,
    none,
};

/// @param left how many of `total` items had changed since.
[[nodiscard]] UndoResult undoResult(std::size_t left, std::size_t total);

/// The names of a change. Each is one line.
struct UndoTexts {
    /// In the menu, after "Undo": "Mark Ada Lovelace as Contacted".
    std::string name;
    /// When the change was made: "Marked Ada Lovelace as contacted."
    std::string note;

    bool operator==(const UndoTexts &) const = default;
};

/// A change that was made, and how to undo it.
struct UndoStep {
    UndoTexts texts;
    /// Whatever it refers to must outlive the stack.
    std::function<UndoResult()> undo;
};

/// The steps of this run, in memory alone; the newest is undone first. Only the newest hundred are
/// kept. Used on the main thread.
class UndoStack : public QObject {
    Q_OBJECT

  public:
    /// Identifies a step; 0 is none.
    using ID = std::uint64_t;

    ID push(UndoStep step);
    /// Null if there is none. Valid until the next change.
    [[nodiscard]] const UndoStep *newest() const;
    /// 0 if there is none.
    [[nodiscard]] ID newestID() const;
    /// Announces the newest step again, after a further change became part of it.
    void extendNewest();
    /// Removes the newest step without undoing it.
    void dropNewest();
    /// Undoes the newest step and removes it. Does nothing if there is none.
    void undo();
    /// Removes all steps, such as when the teacher signs out.
    void clear();

  Q_SIGNALS:
    /// The newest step is another one, or none.
    void newestDidChange();
    /// The newest step was made or extended.
    void stepDidOccur();
    /// @param note the result, as a sentence.
    void undoDidEnd(const QString &note);
    /// All steps were removed by `clear`, even if there was none.
    void stackDidClear();

  private:
    struct Numbered {
        ID id = 0;
        UndoStep step;
    };

    std::deque<Numbered> steps;
    ID lastID = 0;
};

} // namespace ellwynd
