// Canvas's responses and the bodies of its errors.
#include "canvas/records/decoding.h"

#include "canvas/client/errorbody.h"
#include "fuzz/target.h"

#include <array>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    const std::string json(fuzz::text(data, size));
    const std::array<void (*)(const std::string &), 6> readers{
        [](const std::string &text) { (void)decodeCourses(text); },
        [](const std::string &text) { (void)decodeEnrollments(text); },
        [](const std::string &text) { (void)decodeAssignmentGroups(text); },
        [](const std::string &text) { (void)decodeSubmissions(text); },
        [](const std::string &text) { (void)decodeCourse(text); },
        [](const std::string &text) { (void)decodeUser(text); }};
    for (const auto reader : readers) {
        try {
            reader(json);
        } catch (const DecodingError &error) {
            fuzz::require(std::string_view(error.what()).find('\n') == std::string_view::npos);
        }
    }
    (void)canvasErrorText(json);
    (void)looksLikeHTML(json);
    return 0;
}
