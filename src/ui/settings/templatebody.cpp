#include "ui/settings/templatebody.h"

#include "outputs/messages/messagetemplate.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTextBlock>

#include <algorithm>

namespace ellwynd {

namespace {

QAbstractItemModel *placeholderModel(QObject *parent) {
    auto *model = new QStandardItemModel(parent);
    for (const PlaceholderText &each : placeholders) {
        const QString token = qstring(each.token);
        auto *item = new QStandardItem(token + QStringLiteral(" – ") + qstring(each.meaning));
        item->setData(token, Qt::UserRole);
        model->appendRow(item);
    }
    return model;
}

} // namespace

TemplateBody::TemplateBody(const Appearance &appearance, QWidget *parent)
    : QPlainTextEdit(parent), appearance(appearance), completer(new QCompleter(this)) {
    setTabChangesFocus(true);
    completer->setModel(placeholderModel(completer));
    completer->setCompletionRole(Qt::UserRole);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setWidget(this);
    completer->popup()->setAccessibleName(QStringLiteral("Placeholders"));
    connect(
        completer, qOverload<const QModelIndex &>(&QCompleter::activated), this,
        [this](const QModelIndex &index) {
            insertPlaceholder(index.data(Qt::UserRole).toString());
        });
    connect(this, &QPlainTextEdit::textChanged, this, &TemplateBody::underlineUnknown);
    connect(&appearance, &Appearance::appearanceDidChange, this, &TemplateBody::underlineUnknown);
}

QString TemplateBody::unfinished() const {
    const QTextCursor cursor = textCursor();
    if (cursor.hasSelection())
        return {};
    // Longer than any placeholder, so that a long line need not be converted.
    constexpr int enough = 60;
    const int end = cursor.positionInBlock();
    const QString before =
        cursor.block().text().mid(std::max(0, end - enough), std::min(end, enough));
    return qstring(unfinishedPlaceholder(before.toStdString()));
}

bool TemplateBody::event(QEvent *event) {
    if (event->type() != QEvent::KeyPress || !completer->popup()->isVisible())
        return QPlainTextEdit::event(event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Tab &&
        key != Qt::Key_Escape)
        return QPlainTextEdit::event(event);
    // The popup, which has passed it on, handles it.
    event->ignore();
    return true;
}

void TemplateBody::keyPressEvent(QKeyEvent *event) {
    QPlainTextEdit::keyPressEvent(event);
    if (completer->popup()->isVisible() || !event->text().isEmpty())
        offerPlaceholders();
}

void TemplateBody::focusOutEvent(QFocusEvent *event) {
    QPlainTextEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        completer->popup()->hide();
}

void TemplateBody::offerPlaceholders() {
    const QString prefix = unfinished();
    completer->setCompletionPrefix(prefix);
    QAbstractItemView *popup = completer->popup();
    if (prefix.isEmpty() || completer->completionCount() == 0)
        return popup->hide();
    popup->setCurrentIndex(completer->completionModel()->index(0, 0));
    QRect place = cursorRect();
    place.setWidth(popup->sizeHintForColumn(0) + popup->verticalScrollBar()->sizeHint().width());
    completer->complete(place);
}

/// Replaces the unfinished placeholder, and a brace that closes it already.
void TemplateBody::insertPlaceholder(const QString &token) {
    const QString prefix = unfinished();
    QTextCursor cursor = textCursor();
    const QString after = cursor.block().text().mid(cursor.positionInBlock(), 1);
    cursor.movePosition(QTextCursor::Left, QTextCursor::MoveAnchor, int(prefix.size()));
    cursor.movePosition(
        QTextCursor::Right, QTextCursor::KeepAnchor,
        int(prefix.size()) + (after == QStringLiteral("}") ? 1 : 0));
    cursor.insertText(token);
    setTextCursor(cursor);
}

void TemplateBody::underlineUnknown() {
    QTextCharFormat format;
    format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    format.setUnderlineColor(appearance.theme().attention);
    QList<QTextEdit::ExtraSelection> selections;
    constexpr qsizetype most = 100;
    for (const auto &[begin, end] : unknownPlaceholders(document()->toRawText())) {
        if (selections.size() == most)
            break;
        QTextCursor cursor(document());
        cursor.setPosition(int(begin));
        cursor.setPosition(int(end), QTextCursor::KeepAnchor);
        selections.append({cursor, format});
    }
    setExtraSelections(selections);
}

} // namespace ellwynd
