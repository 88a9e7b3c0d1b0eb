// Buttons that filter by what they count.
#pragma once

#include <QPushButton>

#include <string_view>

namespace ellwynd {

/// A button that can be checked, in the form of a chip.
[[nodiscard]] QPushButton *makeChip(QWidget *parent);

/// Shows the name with the number of students, and whether it is the chosen one.
void showChip(QPushButton &chip, std::string_view name, std::size_t students, bool chosen);

} // namespace ellwynd
