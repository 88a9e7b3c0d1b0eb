// The help window.
#pragma once

#include "help/helpbook.h"
#include "preferences/userdefaults.h"

#include <QDialog>

class QLineEdit;
class QPushButton;
class QUrl;

namespace ellwynd {

class Appearance;
class MarkdownPage;
class TopicList;

/// Topics at the left with a search above them, the chosen one at the right. Typing finds topics,
/// the arrow keys choose among them without leaving the search.
class HelpWindow : public QDialog {
    Q_OBJECT

  public:
    /// @param shortcuts the program's commands with their keys, for the topic that lists them.
    HelpWindow(
        UserDefaults &defaults, const Appearance &appearance,
        const std::vector<ShortcutGroup> &shortcuts, QWidget *parent = nullptr);
    ~HelpWindow() override;

    /// Opens the window on a topic, and on the first where there is none of that id.
    void showTopic(const std::string &id);
    void showReleaseNotes();

  protected:
    /// Escape clears the search, and closes the window when there is nothing to clear.
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void search();
    /// Shows a topic; `remember` when the reader came from another one.
    void read(const std::string &id, bool remember);
    void goBack();
    void render();
    void follow(const QUrl &link);

    HelpBook book;
    QLineEdit *query;
    TopicList *topics;
    QPushButton *back;
    MarkdownPage *page;
    std::string current;
    /// Topics read before the current one, oldest first.
    std::vector<std::string> visited;
};

} // namespace ellwynd
