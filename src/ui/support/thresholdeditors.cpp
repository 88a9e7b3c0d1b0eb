#include "ui/support/thresholdeditors.h"

#include "risk/coursethresholds.h"

#include <cmath>

namespace ellwynd {

QDoubleSpinBox *passingScoreEditor(const QString &accessibleName, QWidget *parent) {
    using namespace thresholdBounds;
    auto *editor = new QDoubleSpinBox(parent);
    editor->setRange(minimumPassing, maximumPassing);
    editor->setSingleStep(passingStep);
    editor->setDecimals(1);
    editor->setSuffix(QStringLiteral(" %"));
    editor->setAccessibleName(accessibleName);
    editor->setKeyboardTracking(false);
    // Steps of a half, typed values included.
    QObject::connect(editor, &QDoubleSpinBox::valueChanged, editor, [editor](double value) {
        const double stepped = std::round(value / passingStep) * passingStep;
        if (stepped != value)
            editor->setValue(stepped);
    });
    return editor;
}

QSpinBox *inactivityEditor(const QString &accessibleName, QWidget *parent) {
    using namespace thresholdBounds;
    auto *editor = new QSpinBox(parent);
    editor->setRange(int(minimumDays), int(maximumDays));
    editor->setAccessibleName(accessibleName);
    editor->setKeyboardTracking(false);
    return editor;
}

} // namespace ellwynd
