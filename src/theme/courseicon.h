// The coloured tile that stands for a course.
#pragma once

#include <QPixmap>

#include <cstdint>
#include <string_view>

namespace ellwynd {

/// Up to three letters for a course's tile: the start of the subject its name begins with, "CS" for
/// "CS 101  4021 - Intro". Empty for a name without a letter.
[[nodiscard]] QString courseInitials(std::string_view courseName);

/// The tile's colour: the same for the same course id, with white text readable on it.
[[nodiscard]] QColor courseColor(std::int64_t courseID);

/// A rounded tile, `size` device-independent pixels wide, drawn for a screen of that pixel ratio.
[[nodiscard]] QPixmap
courseTile(std::int64_t courseID, std::string_view courseName, int size, qreal pixelRatio);

} // namespace ellwynd
