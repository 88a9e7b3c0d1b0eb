#include "canvas/records/decoding.h"

#include "canvas/records/diagnosis.h"
#include "canvas/records/values.h"

#include <charconv>

namespace ellwynd {

namespace {

namespace dom = simdjson::dom;

/// Whether an integer fits neither a signed nor an unsigned 64-bit type.
bool exceeds64Bits(std::string_view number) {
    const auto isTooLarge = [&](auto limit) {
        return std::from_chars(number.data(), number.data() + number.size(), limit).ec ==
            std::errc::result_out_of_range;
    };
    return number.starts_with('-') ? isTooLarge(std::int64_t()) : isTooLarge(std::uint64_t());
}

/// The text with integers of more than 64 bits written as reals, since the parser rejects any text
/// with one. Absent if there is none.
std::optional<std::string> withoutLargeIntegers(const std::string &json) {
    std::string result;
    std::size_t copied = 0;
    bool inString = false;
    for (std::size_t i = 0; i < json.size();) {
        const char c = json[i];
        if (c == '"')
            inString = !inString;
        if (inString || (c != '-' && (c < '0' || c > '9'))) {
            i += inString && c == '\\' ? 2 : 1;
            continue;
        }
        const std::size_t end = std::min(json.find_first_not_of("0123456789.eE+-", i), json.size());
        const std::string_view number = std::string_view(json).substr(i, end - i);
        if (number.find_first_of(".eE") == std::string::npos && exceeds64Bits(number)) {
            result.append(json, copied, end - copied).append(".0");
            copied = end;
        }
        i = end;
    }
    if (copied == 0)
        return std::nullopt;
    return result.append(json, copied);
}

/// Keeps the memory of a parser for pages of usual size, and makes one for each larger page.
dom::parser &parserFor(std::size_t size, std::optional<dom::parser> &large) {
    constexpr std::size_t usualSize = std::size_t{256} * 1024;
    thread_local dom::parser usual;
    return size > usualSize ? large.emplace() : usual;
}

/// Parses a text and decodes its root.
/// @param what begins the error message.
template<class Root>
Root decode(const std::string &json, std::string_view what) {
    const std::string subject(what);
    std::optional<dom::parser> large;
    dom::parser &parser = parserFor(json.size(), large);
    if (parser.capacity() < json.size() && parser.allocate(json.size(), maxNesting))
        throw DecodingError(subject + ": it is too large");
    dom::element root;
    auto error = parser.parse(json).get(root);
    if (error) {
        if (const auto readable = withoutLargeIntegers(json))
            error = parser.parse(*readable).get(root);
    }
    if (error)
        throw DecodingError(subject + ": " + diagnose(json));
    Root result;
    try {
        decoding::decodeValue(root, result);
    } catch (const decoding::Fault &fault) {
        const std::string path = fault.path.empty() ? "" : " " + fault.path;
        throw DecodingError(subject + path + " " + fault.problem);
    }
    return result;
}

template<class Record>
std::vector<Record> decodeList(const std::string &json) {
    return decode<std::vector<Record>>(json, decoding::Schema<Record>::name);
}

} // namespace

std::vector<Course> decodeCourses(const std::string &json) {
    return decodeList<Course>(json);
}

std::vector<Enrollment> decodeEnrollments(const std::string &json) {
    return decodeList<Enrollment>(json);
}

std::vector<AssignmentGroup> decodeAssignmentGroups(const std::string &json) {
    return decodeList<AssignmentGroup>(json);
}

std::vector<SubmissionSummary> decodeSubmissions(const std::string &json) {
    return decodeList<SubmissionSummary>(json);
}

Course decodeCourse(const std::string &json) {
    return decode<Course>(json, decoding::Schema<Course>::name);
}

CanvasUser decodeUser(const std::string &json) {
    return decode<CanvasUser>(json, decoding::Schema<CanvasUser>::name);
}

} // namespace ellwynd
