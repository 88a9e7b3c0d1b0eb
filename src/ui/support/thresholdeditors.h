// The editors of the two thresholds, with the ranges of the preference table.
#pragma once

#include "preferences/preference.h"

#include <QDoubleSpinBox>

namespace ellwynd {

/// Edits a number of a range. A typed number is rounded to the range's step and moved into the
/// range before `valueChanged` is emitted. A number that was saved otherwise, such as by an older
/// version, is shown unchanged and kept until another one is entered.
class ThresholdEditor : public QDoubleSpinBox {
    Q_OBJECT

  public:
    ThresholdEditor(const NumberRange &range, const QString &accessibleName, QWidget *parent);

    /// Shows a saved number, and emits nothing.
    void showSaved(double number);

    [[nodiscard]] double valueFromText(const QString &text) const override;
    void stepBy(int steps) override;

  protected:
    [[nodiscard]] StepEnabled stepEnabled() const override;

  private:
    /// The nearest number that can be entered.
    [[nodiscard]] double entered(double number) const;

    NumberRange accepted;
};

/// Edits a percentage.
[[nodiscard]] ThresholdEditor *passingScoreEditor(const QString &accessibleName, QWidget *parent);
/// Edits whole days.
[[nodiscard]] ThresholdEditor *inactivityEditor(const QString &accessibleName, QWidget *parent);

} // namespace ellwynd
