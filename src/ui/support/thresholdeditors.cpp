#include "ui/support/thresholdeditors.h"

#include "preferences/preferencekeys.h"

namespace ellwynd {

QDoubleSpinBox *passingScoreEditor(const QString &accessibleName, QWidget *parent) {
    static constexpr NumberRange range = preferences::passingScores;
    auto *editor = new QDoubleSpinBox(parent);
    editor->setRange(range.minimum, range.maximum);
    editor->setSingleStep(range.step);
    editor->setDecimals(1);
    editor->setSuffix(QStringLiteral(" %"));
    editor->setAccessibleName(accessibleName);
    editor->setKeyboardTracking(false);
    // Typed values are rounded as well.
    QObject::connect(editor, &QDoubleSpinBox::valueChanged, editor, [editor](double value) {
        const double stepped = range.roundedToStep(value);
        if (stepped != value)
            editor->setValue(stepped);
    });
    return editor;
}

QSpinBox *inactivityEditor(const QString &accessibleName, QWidget *parent) {
    constexpr NumberRange range = preferences::inactivityWindows;
    auto *editor = new QSpinBox(parent);
    editor->setRange(int(range.minimum), int(range.maximum));
    editor->setSingleStep(int(range.step));
    editor->setAccessibleName(accessibleName);
    editor->setKeyboardTracking(false);
    return editor;
}

} // namespace ellwynd
