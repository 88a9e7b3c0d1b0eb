// Settings ▸ Messages.
#pragma once

#include "app/undo/undostack.h"
#include "outputs/messages/templatestore.h"
#include "ui/settings/settingspane.h"
#include "ui/settings/templateeditor.h"

#include <QTimer>

class QBoxLayout;
class QListWidget;
class QPushButton;

namespace ellwynd {

/// The list of message templates and an editor with a preview of the chosen one. Edits are saved
/// after a short pause, and when the focus moves or the pane is hidden or destroyed. Deleting and
/// restoring can be undone.
class MessagesPane : public SettingsPane {
    Q_OBJECT

  public:
    /// @param store must outlive the stack, and the pane, which saves unsaved edits when destroyed.
    MessagesPane(
        UserDefaults &defaults, TemplateStore &store, UndoStack &undo, PreviewSource students,
        const Appearance &appearance);
    ~MessagesPane() override;

    /// Call when the students of the preview may have changed.
    void refreshPreview() {
        if (isVisible())
            editor->refreshPreview();
    }

  protected:
    void showPreferences() override {}
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    QWidget *makeList();
    void arrange();
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
    void pushUndo(TemplateStore::Removal removal, UndoTexts texts);

    TemplateStore &store;
    UndoStack &undo;
    /// The list beside or above the editor.
    QBoxLayout *columns;
    QListWidget *list;
    QPushButton *newButton;
    QPushButton *duplicateButton;
    QPushButton *deleteButton;
    TemplateEditor *editor;
    /// The id of the template in the editor; empty for none.
    std::string shown;
    /// The editor has unsaved edits.
    bool edited = false;
    QTimer saveSoon;
};

} // namespace ellwynd
