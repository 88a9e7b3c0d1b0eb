// Announcements for screen readers.
#pragma once

#include <QString>

class QWidget;

namespace ellwynd {

/// Has a text read out for a window: its description, announced as an alert.
void announce(QWidget &window, const QString &text);

} // namespace ellwynd
