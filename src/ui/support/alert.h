// Alerts over a window.
#pragma once

#include <QString>

class QMessageBox;
class QWidget;

namespace ellwynd {

/// An alert without buttons that deletes itself when closed. Both texts are plain text, since they
/// may come from a server.
[[nodiscard]] QMessageBox *
plainAlert(QWidget *window, const QString &message, const QString &detail);

} // namespace ellwynd
