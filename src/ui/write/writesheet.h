// The Write sheet.
#pragma once

#include "app/messages/writesession.h"

#include <QDialog>

class QBoxLayout;
class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;

namespace ellwynd {

class Appearance;
class ElidedLabel;
class LevelPill;
class MessageClipboard;
class WriteList;

/// The students of a session beside the message to the current one, which is copied with Return. A
/// window of its own that other programs may cover, so that it can stay beside the browser.
class WriteSheet : public QDialog {
    Q_OBJECT

  public:
    /// @param over the window over which the sheet opens; it is smaller than that.
    /// The other arguments must outlive the sheet.
    WriteSheet(
        const SharedList<RiskRow> &students, UserDefaults &defaults, Stores &stores,
        UndoStack &undo, const Appearance &appearance, const QWidget &over);

    /// Whether students are waiting, so that others can be added.
    [[nodiscard]] bool isUnfinished() const { return session->current().has_value(); }
    /// Adds students and shows the first of them.
    void add(const SharedList<RiskRow> &students);
    /// Asks first if edited messages were not copied.
    void reject() override;

  Q_SIGNALS:
    /// The settings of templates should be shown.
    void templatesRequested();

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    QWidget *makeLetterPage();
    QWidget *makeEndPage();
    QBoxLayout *makeButtons();
    void connectSession();
    void addKeys();
    void placeOver(const QWidget &window);
    void applyAppearance();
    void arrange();
    void showSession();
    void showStudent(const WriteSession::Student &student);
    void showTemplates();
    void showText(const QString &text);
    void showEnd();
    void showButtons();
    void copyCurrent();
    void report(WriteSession::CopyResult result);
    /// Closes without asking.
    void finish();
    [[nodiscard]] std::string editorText() const;

    UserDefaults &defaults;
    UndoStack &undo;
    const TemplateStore &templates;
    const Appearance &appearance;
    MessageClipboard *clipboard;
    std::unique_ptr<WriteSession> session;
    /// The students beside or above the message.
    QBoxLayout *panes;
    WriteList *list;
    QStackedWidget *pages;
    // The message.
    ElidedLabel *name;
    LevelPill *level;
    ElidedLabel *facts;
    QLabel *templateTitle;
    QComboBox *templateChoice;
    QPushButton *noTemplates;
    QPlainTextEdit *editor;
    // The end.
    QLabel *endTitle;
    QLabel *endNote;
    QPushButton *undoButton;
    // Below both.
    QLabel *clipboardLine;
    QLabel *problem;
    QBoxLayout *buttons;
    QPushButton *copyAllButton;
    QPushButton *skipButton;
    QPushButton *copyButton;
    QPushButton *doneButton;
    /// The student and the text that the editor was last given.
    std::optional<StudentKey> shownStudent;
    QString shownText;
};

} // namespace ellwynd
