#include "ui/support/messageclipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QScopedValueRollback>

#include <utility>

namespace ellwynd {

bool copyMessage(const QString &text) {
    auto *data = new QMimeData;
    data->setText(text);
    data->setData(QStringLiteral("x-kde-passwordManagerHint"), "secret");
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(data);
    const QMimeData *held = clipboard->mimeData();
    return held != nullptr && held->text() == text;
}

MessageClipboard::MessageClipboard(QObject *parent) : QObject(parent) {
    connect(
        QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
        &MessageClipboard::clipboardDidChange);
}

bool MessageClipboard::copy(const std::string &text) {
    const QScopedValueRollback guard(isCopying, true);
    const QString message = QString::fromStdString(text);
    if (!copyMessage(message))
        return false;
    copied = message;
    return true;
}

void MessageClipboard::clipboardDidChange() {
    if (isCopying || copied.isNull())
        return;
    // Some desktops announce a program's own text once more. Another program's is not read.
    const QClipboard *clipboard = QGuiApplication::clipboard();
    if (clipboard->ownsClipboard() && clipboard->text() == copied)
        return;
    copied = QString();
    Q_EMIT messageWasReplaced();
}

} // namespace ellwynd
