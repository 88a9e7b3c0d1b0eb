#include "ui/support/chip.h"

#include "app/roster/rostertexts.h"
#include "uikit/convert.h"

namespace ellwynd {

QPushButton *makeChip(QWidget *parent) {
    auto *chip = new QPushButton(parent);
    chip->setProperty("chip", true);
    chip->setCheckable(true);
    chip->setAutoDefault(false);
    return chip;
}

void showChip(QPushButton &chip, std::string_view name, std::size_t students, bool chosen) {
    chip.setText(QStringLiteral("%1 %2").arg(qstring(name)).arg(students));
    chip.setAccessibleName(qstring(name) + QStringLiteral(", ") + qstring(studentsText(students)));
    chip.setChecked(chosen);
}

} // namespace ellwynd
