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

/// A search field over the list of topics, with the chosen topic beside it. Typing filters the
/// topics; the arrow keys choose among them while the search field keeps the focus.
class HelpWindow : public QDialog {
    Q_OBJECT

  public:
    /// @param shortcuts the program's commands with their keys, for the topic that lists them.
    /// The other arguments must outlive the window.
    HelpWindow(
        UserDefaults &defaults, const Appearance &appearance,
        const std::vector<ShortcutGroup> &shortcuts, QWidget *parent = nullptr);
    ~HelpWindow() override;

    /// Opens the window on a topic, or on the first when no topic has that id.
    void showTopic(const std::string &id);
    void showReleaseNotes();

  protected:
    /// Escape clears the search, or closes the window when the search is empty.
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void search();
    /// Shows a topic. @param remember whether Back returns to the topic shown before.
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
