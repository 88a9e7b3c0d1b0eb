// The colour, the letters and the tile of a course.
#pragma once

#include "preferences/coursesettings.h"

#include <QPixmap>

#include <cstdint>
#include <string_view>

namespace ellwynd {

/// Up to three letters for a course's tile, from the first word with letters: "CS" for
/// "CS 101  4021 - Intro". Empty for a name without letters.
[[nodiscard]] QString courseInitials(std::string_view courseName);

/// The tile's colour: the chosen one, else one that depends on the course id. White text is
/// readable on each.
/// @param chosen a word of `courseSettings::colorWords`; any other counts as none.
[[nodiscard]] QColor courseColor(std::int64_t courseID, std::string_view chosen = {});

/// A rounded tile, `size` device-independent pixels wide, with the chosen glyph or else the
/// course's letters.
[[nodiscard]] QPixmap courseTile(
    std::int64_t courseID, std::string_view courseName, int size, qreal pixelRatio,
    const CourseIcon &chosen = {});

} // namespace ellwynd
