// The editors of the two thresholds, with the ranges of the preference table.
#pragma once

#include <QDoubleSpinBox>
#include <QSpinBox>

namespace ellwynd {

/// Edits a percentage; typed values are rounded to a step.
[[nodiscard]] QDoubleSpinBox *passingScoreEditor(const QString &accessibleName, QWidget *parent);
/// Edits whole days.
[[nodiscard]] QSpinBox *inactivityEditor(const QString &accessibleName, QWidget *parent);

} // namespace ellwynd
