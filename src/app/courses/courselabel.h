// A course's name in two parts, for narrow places.
#pragma once

#include "canvas/records/records.h"

#include <string>
#include <string_view>

namespace ellwynd {

struct CourseLabel {
    /// "Intro to Programming".
    std::string name;
    /// "CS 101 4021"; may be empty.
    std::string code;

    bool operator==(const CourseLabel &) const = default;
};

/// Splits a name such as "CS 101  4021 - Intro to Programming" after its code; otherwise the code
/// is Canvas's, unless the name shows it. Runs of white space become one blank.
[[nodiscard]] CourseLabel courseLabel(const Course &course);

/// Whether two names begin alike, so that their ends tell them apart.
[[nodiscard]] bool beginAlike(std::string_view a, std::string_view b);

/// A text on one line, with runs of white space as one blank and none at the ends.
[[nodiscard]] std::string collapsed(std::string_view text);

} // namespace ellwynd
