// Settings ▸ Messages.
#pragma once

#include "outputs/messages/templatestore.h"
#include "ui/settings/settingspane.h"
#include "ui/settings/templateeditor.h"

#include <QTimer>

class QListWidget;
class QPushButton;

namespace ellwynd {

class ElidedLabel;

/// The message templates: a list of them, the chosen one's words, and what they become. Words are
/// saved a moment after they are written, and whenever the teacher turns elsewhere; what is deleted
/// or replaced can be put back.
class MessagesPane : public SettingsPane {
    Q_OBJECT

  public:
    /// @param store outlives the pane, which saves the last words as it goes.
    MessagesPane(
        UserDefaults &defaults, TemplateStore &store, PreviewSource student,
        const Appearance &appearance);
    ~MessagesPane() override;

    /// Shows the preview for the student who is there now.
    void refreshPreview() { editor->refreshPreview(); }

  protected:
    void showPreferences() override {}
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

  private:
    struct Undoable {
        QString text;
        TemplateStore::Removal removal;
    };

    QWidget *makeList();
    QWidget *makeUndoBar();
    void showTemplates();
    void showChosen();
    void choose(const std::string &id);
    [[nodiscard]] std::string idAt(int row) const;
    [[nodiscard]] std::string chosen() const;
    void save();

    void addNew();
    void duplicate();
    void removeChosen();
    void restoreDefaults();
    void canUndo(const QString &text, TemplateStore::Removal removal);
    void undo();
    void showUndoBar();

    TemplateStore &store;
    QListWidget *list;
    QPushButton *newButton;
    QPushButton *duplicateButton;
    QPushButton *deleteButton;
    QWidget *undoBar;
    ElidedLabel *undoText;
    QPushButton *undoButton;
    TemplateEditor *editor;
    /// Whose words the editor shows, and whether they differ from the saved ones.
    std::string shown;
    bool edited = false;
    QTimer saveSoon;
    std::vector<Undoable> undoables;
};

} // namespace ellwynd
