// The editors of the two thresholds, with the bounds they share with the command line.
#pragma once

#include <QDoubleSpinBox>
#include <QSpinBox>

namespace ellwynd {

/// Percent; a typed value is rounded to a step.
[[nodiscard]] QDoubleSpinBox *passingScoreEditor(const QString &accessibleName, QWidget *parent);
/// Whole days.
[[nodiscard]] QSpinBox *inactivityEditor(const QString &accessibleName, QWidget *parent);

} // namespace ellwynd
