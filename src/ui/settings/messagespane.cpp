#include "ui/settings/messagespane.h"

#include "app/undo/undotexts.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr int idRole = Qt::UserRole;

/// A template's line in the list.
QString itemText(const std::string &name) {
    return qstring(titleOf({.name = name}));
}

} // namespace

MessagesPane::MessagesPane(
    UserDefaults &defaults, TemplateStore &store, UndoStack &undo, PreviewSource students,
    const Appearance &appearance)
    : SettingsPane(QStringLiteral("Messages"), defaults, appearance),
      store(store),
      undo(undo),
      editor(new TemplateEditor(std::move(students), appearance)) {
    addNote(QStringLiteral(
        "Templates of the messages that you copy for students. Ellwynd does not send them."));
    auto *both = new QWidget;
    columns = new QBoxLayout(QBoxLayout::LeftToRight, both);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->addWidget(makeList());
    columns->addWidget(editor, 1);
    addFilling(both);
    connect(&appearance, &Appearance::appearanceDidChange, this, &MessagesPane::arrange);
    arrange();

    constexpr int saveDelay = 400;
    saveSoon.setSingleShot(true);
    saveSoon.setInterval(saveDelay);
    connect(&saveSoon, &QTimer::timeout, this, &MessagesPane::save);
    connect(editor, &TemplateEditor::saveRequested, this, &MessagesPane::save);
    connect(editor, &TemplateEditor::templateDidChange, this, [this] {
        edited = true;
        if (QListWidgetItem *item = list->currentItem())
            item->setText(itemText(editor->name()));
        saveSoon.start();
    });
    connect(list, &QListWidget::currentItemChanged, this, [this] {
        save();
        showChosen();
    });
    connect(&store, &TemplateStore::templatesDidChange, this, &MessagesPane::showTemplates);
    auto *deleteKey = new QShortcut(QKeySequence::Delete, list);
    deleteKey->setContext(Qt::WidgetShortcut);
    connect(deleteKey, &QShortcut::activated, this, &MessagesPane::removeChosen);

    showTemplates();
}

MessagesPane::~MessagesPane() {
    disconnect(&store, nullptr, this, nullptr);
    save();
}

QWidget *MessagesPane::makeList() {
    list = new QListWidget;
    list->setObjectName(QStringLiteral("templates"));
    list->setAccessibleName(QStringLiteral("Message templates"));
    list->setTextElideMode(Qt::ElideRight);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setMinimumWidth(1);
    newButton = new QPushButton(QStringLiteral("New Template"));
    duplicateButton = new QPushButton(QStringLiteral("Duplicate"));
    deleteButton = new QPushButton(QStringLiteral("Delete"));
    auto *restoreButton = new QPushButton(QStringLiteral("Restore Defaults"));
    restoreButton->setToolTip(
        QStringLiteral("Restore the three original templates, replacing those with their names"));
    auto *area = new QWidget;
    auto *column = new QVBoxLayout(area);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(list, 1);
    for (QPushButton *button : {newButton, duplicateButton, deleteButton, restoreButton}) {
        button->setAutoDefault(false);
        column->addWidget(button);
    }
    connect(newButton, &QPushButton::clicked, this, &MessagesPane::addNew);
    connect(duplicateButton, &QPushButton::clicked, this, &MessagesPane::duplicate);
    connect(deleteButton, &QPushButton::clicked, this, &MessagesPane::removeChosen);
    connect(restoreButton, &QPushButton::clicked, this, &MessagesPane::restoreDefaults);
    return area;
}

/// Puts the list beside the editor, or above it in a narrow window.
void MessagesPane::arrange() {
    constexpr int enough = 560;
    const bool wide = width() >= appearance.px(enough);
    columns->setDirection(wide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    columns->setSpacing(appearance.px(12));
    QWidget *area = list->parentWidget();
    constexpr int listWidth = 160;
    area->setMaximumWidth(wide ? appearance.px(listWidth) : QWIDGETSIZE_MAX);
    constexpr int rows = 4;
    list->setMinimumHeight(rows * appearance.px(24));
}

void MessagesPane::resizeEvent(QResizeEvent *event) {
    SettingsPane::resizeEvent(event);
    arrange();
}

// ---- What is shown -----------------------------------------------------------------------------

/// Updates the list from the store. If the chosen template is gone, the one in its place is chosen.
void MessagesPane::showTemplates() {
    const std::vector<MessageTemplate> &templates = store.templates();
    bool sameIDs = std::size_t(list->count()) == templates.size();
    for (std::size_t i = 0; sameIDs && i < templates.size(); ++i)
        sameIDs = idAt(int(i)) == templates[i].id;
    const QSignalBlocker quiet(list);
    if (!sameIDs) {
        const std::string keep = chosen();
        const int row = list->currentRow();
        list->clear();
        for (const MessageTemplate &each : templates)
            (new QListWidgetItem(list))->setData(idRole, qstring(each.id));
        list->setCurrentRow(std::min(std::max(row, 0), list->count() - 1));
        choose(keep);
    }
    for (std::size_t i = 0; i < templates.size(); ++i)
        list->item(int(i))->setText(itemText(templates[i].name));
    showChosen();
}

void MessagesPane::showChosen() {
    const MessageTemplate *message = store.find(chosen());
    duplicateButton->setEnabled(message != nullptr);
    deleteButton->setEnabled(message != nullptr);
    const std::string id = message != nullptr ? message->id : std::string();
    // Keep unsaved edits.
    if (edited && id == shown)
        return;
    shown = id;
    edited = false;
    editor->show(message);
}

void MessagesPane::choose(const std::string &id) {
    for (int row = 0; row < list->count(); ++row) {
        if (idAt(row) == id)
            list->setCurrentRow(row);
    }
}

std::string MessagesPane::idAt(int row) const {
    return list->item(row)->data(idRole).toString().toStdString();
}

std::string MessagesPane::chosen() const {
    return list->currentRow() >= 0 ? idAt(list->currentRow()) : std::string();
}

void MessagesPane::save() {
    saveSoon.stop();
    if (!edited)
        return;
    edited = false;
    store.update(shown, editor->name(), editor->body());
}

void MessagesPane::showEvent(QShowEvent *event) {
    SettingsPane::showEvent(event);
    refreshPreview();
}

void MessagesPane::hideEvent(QHideEvent *event) {
    save();
    SettingsPane::hideEvent(event);
}

// ---- Commands ----------------------------------------------------------------------------------

void MessagesPane::addNew() {
    save();
    choose(store.addUntitled());
    editor->beginNaming();
}

void MessagesPane::duplicate() {
    save();
    choose(store.duplicate(chosen()));
}

void MessagesPane::removeChosen() {
    save();
    const MessageTemplate *message = store.find(chosen());
    if (message == nullptr)
        return;
    const UndoTexts texts = undotexts::deletedTemplate(itemText(message->name).toStdString());
    pushUndo(store.remove(message->id), texts);
    if (list->count() > 0)
        list->setFocus();
    else
        newButton->setFocus();
}

void MessagesPane::restoreDefaults() {
    save();
    pushUndo(store.restoreDefaults(), undotexts::restoredTemplates());
}

void MessagesPane::pushUndo(TemplateStore::Removal removal, UndoTexts texts) {
    if (removal.removed.empty() && removal.added.empty())
        return;
    const QPointer<MessagesPane> self(this);
    undo.push(
        {.texts = std::move(texts), .undo = [&store = store, removal = std::move(removal), self] {
             if (self)
                 self->save();
             store.undo(removal);
             if (self && !removal.removed.empty())
                 self->choose(removal.removed.front().message.id);
             return UndoResult::all;
         }});
}

} // namespace ellwynd
