#include "ui/support/thresholdeditors.h"

#include "preferences/preferencekeys.h"

#include <QSignalBlocker>

#include <algorithm>
#include <cmath>

namespace ellwynd {

namespace {

/// How many decimals show a number unchanged, at least `fewest`.
int decimalsOf(double number, int fewest) {
    constexpr int most = 17;
    int decimals = fewest;
    while (decimals < most && QString::number(number, 'f', decimals).toDouble() != number)
        ++decimals;
    return decimals;
}

/// The decimals of the multiples of a step.
int decimalsOfStep(const NumberRange &range) {
    return decimalsOf(range.step, 0);
}

} // namespace

ThresholdEditor::ThresholdEditor(
    const NumberRange &range, const QString &accessibleName, QWidget *parent)
    : QDoubleSpinBox(parent), accepted(range) {
    setDecimals(decimalsOfStep(range));
    setRange(range.minimum, range.maximum);
    setSingleStep(range.step);
    setAccessibleName(accessibleName);
    setKeyboardTracking(false);
}

void ThresholdEditor::showSaved(double number) {
    const int needed = decimalsOf(number, decimalsOfStep(accepted));
    // A number that is being typed is kept.
    if (number == value() && decimals() == needed)
        return;
    const QSignalBlocker quiet(this);
    setDecimals(needed);
    setRange(std::min(accepted.minimum, number), std::max(accepted.maximum, number));
    setValue(number);
}

double ThresholdEditor::entered(double number) const {
    return std::clamp(accepted.roundedToStep(number), accepted.minimum, accepted.maximum);
}

double ThresholdEditor::valueFromText(const QString &text) const {
    // The text of the shown number, also without having been edited.
    if (text == textFromValue(value()) || text == prefix() + textFromValue(value()) + suffix())
        return value();
    return entered(QDoubleSpinBox::valueFromText(text));
}

void ThresholdEditor::stepBy(int steps) {
    setValue(entered(value() + steps * accepted.step));
    selectAll();
}

QAbstractSpinBox::StepEnabled ThresholdEditor::stepEnabled() const {
    StepEnabled enabled = StepNone;
    if (value() < accepted.maximum)
        enabled |= StepUpEnabled;
    if (value() > accepted.minimum)
        enabled |= StepDownEnabled;
    return enabled;
}

ThresholdEditor *passingScoreEditor(const QString &accessibleName, QWidget *parent) {
    auto *editor = new ThresholdEditor(preferences::passingScores, accessibleName, parent);
    editor->setSuffix(QStringLiteral(" %"));
    return editor;
}

ThresholdEditor *inactivityEditor(const QString &accessibleName, QWidget *parent) {
    return new ThresholdEditor(preferences::inactivityWindows, accessibleName, parent);
}

} // namespace ellwynd
