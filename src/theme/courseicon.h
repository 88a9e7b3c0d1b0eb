// The coloured tile of a course.
#pragma once

#include "preferences/coursesettings.h"

#include <QPixmap>

#include <cstdint>
#include <string_view>

namespace ellwynd {

/// Up to three letters for a course's tile: the start of the subject its name begins with, "CS" for
/// "CS 101  4021 - Intro". Empty for a name without a letter.
[[nodiscard]] QString courseInitials(std::string_view courseName);

/// The tile's colour: the one that was chosen, or else the same for the same course id. White is
/// readable on each.
/// @param chosen a word of `courseSettings::colorWords`; any other counts as none.
[[nodiscard]] QColor courseColor(std::int64_t courseID, std::string_view chosen = {});

/// A rounded tile, `size` device-independent pixels wide, drawn for a screen of that pixel ratio.
/// It shows the glyph that was chosen, or else the course's letters.
[[nodiscard]] QPixmap courseTile(
    std::int64_t courseID, std::string_view courseName, int size, qreal pixelRatio,
    const CourseIcon &chosen = {});

} // namespace ellwynd
