#include "canvas/records/records.h"

namespace ellwynd {

namespace {

bool hasText(const std::optional<std::string> &text) {
    return text && !text->empty();
}

} // namespace

std::string displayName(const Course &course) {
    if (hasText(course.name))
        return *course.name;
    if (hasText(course.courseCode))
        return *course.courseCode;
    return "Course " + std::to_string(course.id);
}

std::string displayName(const Term &term) {
    return hasText(term.name) ? *term.name : "Term " + std::to_string(term.id);
}

} // namespace ellwynd
