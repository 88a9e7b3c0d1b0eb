// One field over the main window that finds students, courses, terms and commands.
#pragma once

#include "app/find/findindex.h"

#include <QFrame>
#include <QPointer>

class QKeyEvent;
class QLabel;
class QLineEdit;

namespace ellwynd {

class Appearance;
class FindList;

/// A field with the results of what is typed below it, near the top of a window. Return and a click
/// open a result; Escape, a click elsewhere and moving the focus elsewhere close the panel.
class FindPanel : public QFrame {
    Q_OBJECT

  public:
    /// @param appearance must outlive this object.
    /// @param window owns the panel, which is hidden at first and always fits into it.
    FindPanel(const Appearance &appearance, QWidget &window);
    ~FindPanel() override;

    /// Shows the panel with an empty field, and moves the focus to it.
    void open(FindIndex index);
    /// Replaces what can be found. What was typed stays, and the selected result too if it is still
    /// found.
    void setIndex(FindIndex newIndex);
    /// Hides the panel and gives the focus back to where it was. Forgets all names.
    void dismiss();

  Q_SIGNALS:
    /// A result was chosen; the panel is closed.
    void entryRequested(const ellwynd::FindEntry &entry);

  protected:
    /// Watches the application while the panel is open.
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void showResults(const std::optional<FindEntry> &current);
    void choose(const std::optional<FindEntry> &entry);
    void focusDidChange(const QWidget *now);
    void place();
    [[nodiscard]] bool contains(const QObject *object) const;
    bool handleKey(QObject *watched, QKeyEvent &key);
    /// Hides the panel.
    void forget();

    const Appearance &appearance;
    QWidget &owner;
    QLineEdit *field;
    FindList *list;
    /// Shown in place of results.
    QLabel *hint;
    FindIndex index;
    QPointer<QWidget> focusBefore;
};

} // namespace ellwynd
