// The clipboard for messages to students.
#pragma once

#include <QObject>
#include <QString>

#include <string>

namespace ellwynd {

/// Puts a message on the clipboard, with a hint to clipboard managers not to keep it. Returns
/// whether it is there: another program may hold the clipboard.
[[nodiscard]] bool copyMessage(const QString &text);

/// Copies messages, and notices when something else replaces the last one.
class MessageClipboard : public QObject {
    Q_OBJECT

  public:
    explicit MessageClipboard(QObject *parent = nullptr);

    /// See `copyMessage`.
    bool copy(const std::string &text);

  Q_SIGNALS:
    /// The clipboard no longer has the message that was copied last.
    void messageWasReplaced();

  private:
    void clipboardDidChange();

    QString copied;
    bool isCopying = false;
};

} // namespace ellwynd
