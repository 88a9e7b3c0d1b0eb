// Alerts over a window.
#pragma once

#include <QString>

class QMessageBox;
class QWidget;

namespace ellwynd {

/// An alert without buttons yet, which goes away when it is closed. Neither of its texts is ever
/// read as markup: either may hold words of a server.
[[nodiscard]] QMessageBox *
plainAlert(QWidget *window, const QString &message, const QString &detail);

} // namespace ellwynd
