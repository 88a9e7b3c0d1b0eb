#include "app/courses/courselabel.h"

#include "base/text.h"

#include <algorithm>

namespace ellwynd {

std::string collapsed(std::string_view text) {
    std::string result;
    for (const char c : oneLine(text)) {
        if (c != ' ' || (!result.empty() && result.back() != ' '))
            result += c;
    }
    return std::string(trim(result));
}

void compareNames(std::span<CourseLabel *const> labels) {
    constexpr std::size_t enough = 12;
    const auto beginAlike = [](std::string_view a, std::string_view b) {
        return a != b && a.size() > enough && a.substr(0, enough) == b.substr(0, enough);
    };
    for (CourseLabel *label : labels) {
        label->endMatters = std::ranges::any_of(
            labels, [&](const CourseLabel *other) { return beginAlike(label->name, other->name); });
    }
}

CourseLabel courseLabel(const Course &course) {
    const std::string name = collapsed(displayName(course));
    constexpr std::string_view separator = " - ";
    const std::size_t at = name.find(separator);
    if (at != std::string::npos) {
        const std::string code = name.substr(0, at);
        const std::string rest = name.substr(at + separator.size());
        if (!rest.empty() && std::ranges::any_of(code, isDigit))
            return {.name = rest, .code = code};
    }
    const std::string code = collapsed(course.courseCode.value_or(""));
    if (name.find(code) != std::string::npos)
        return {.name = name, .code = {}};
    return {.name = name, .code = code};
}

} // namespace ellwynd
