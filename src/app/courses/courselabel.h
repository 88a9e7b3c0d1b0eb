// A course's name in two parts, for narrow places.
#pragma once

#include "canvas/records/records.h"

#include <span>
#include <string>
#include <string_view>

namespace ellwynd {

struct CourseLabel {
    /// "Intro to Programming".
    std::string name;
    /// "CS 101 4021"; may be empty.
    std::string code;
    /// Whether the name begins like that of another course, so that its end tells them apart.
    bool endMatters = false;

    /// The code, or else the name.
    [[nodiscard]] const std::string &shortName() const { return code.empty() ? name : code; }
    bool operator==(const CourseLabel &) const = default;
};

/// Splits a name such as "CS 101  4021 - Intro to Programming" after its code; otherwise the code
/// is Canvas's, unless the name shows it. Runs of white space become one blank.
[[nodiscard]] CourseLabel courseLabel(const Course &course);

/// Sets `endMatters` of the courses of one term.
void compareNames(std::span<CourseLabel *const> labels);

/// A text on one line, with runs of white space as one blank and none at the ends.
[[nodiscard]] std::string collapsed(std::string_view text);

} // namespace ellwynd
