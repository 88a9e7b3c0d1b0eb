#include "canvas/client/errorbody.h"

#include "base/text.h"
#include "canvas/records/decoding.h"

#include <simdjson.h>

namespace ellwynd {

namespace {

namespace dom = simdjson::dom;

std::string_view messageOf(const dom::object &object) {
    std::string_view text;
    return object["message"].get(text) ? std::string_view() : text;
}

} // namespace

std::optional<std::string> canvasErrorText(const std::string &body) {
    dom::parser parser;
    dom::object root;
    if (parser.allocate(body.size(), maxNesting) || parser.parse(body).get(root))
        return std::nullopt;
    if (const auto message = messageOf(root); !message.empty())
        return std::string(message);
    dom::array errors;
    if (root["errors"].get(errors))
        return std::nullopt;
    std::vector<std::string> messages;
    for (const dom::element error : errors) {
        dom::object object;
        if (error.get(object))
            return std::nullopt;
        if (const auto message = messageOf(object); !message.empty())
            messages.emplace_back(message);
    }
    return messages.empty() ? std::nullopt : std::optional{join(messages, " ")};
}

bool looksLikeHTML(std::string_view body) {
    constexpr std::size_t examined = 256;
    const std::string_view start = body.substr(0, examined);
    const std::size_t first = start.find_first_not_of(" \t\r\n\v\f");
    return first != std::string_view::npos && start[first] == '<' &&
        simdjson::validate_utf8(start.data(), start.size());
}

} // namespace ellwynd
