// Announcements for screen readers.
#pragma once

#include <QString>

class QWidget;

namespace ellwynd {

/// Makes screen readers read a text, as an alert of a window.
void announce(QWidget &window, const QString &text);

} // namespace ellwynd
