#include "outputs/messages/templatefile.h"

#include "base/files.h"
#include "base/json.h"
#include "base/referencedate.h"
#include "base/text.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace ellwynd {

namespace {

using nlohmann::json;

bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

/// Whether a text is a UUID with 8-4-4-4-12 digits.
bool isUUID(std::string_view text) {
    constexpr std::string_view form = "00000000-0000-0000-0000-000000000000";
    return std::ranges::equal(text, form, [](char c, char expected) {
        return expected == '-' ? c == '-' : isHexDigit(c);
    });
}

std::string textOf(const json &item, const char *key) {
    auto text = stringOf(memberOf(item, key));
    if (!text)
        throw FileError(fmt::format("A template's {} is not a string.", key));
    return std::move(*text);
}

/// The date of a key. For a number out of range that of `other`, since a template's text is worth
/// more than its dates, and for two of them the reference date.
Date dateOf(const json &item, const char *key, const char *other = nullptr) {
    if (isOutOfRange(item, key))
        return other != nullptr ? dateOf(item, other) : referenceDate;
    const auto seconds = numberOf(memberOf(item, key));
    const auto date = seconds ? dateSinceReference(*seconds) : std::nullopt;
    if (!date)
        throw FileError(fmt::format("A template's {} is not a date.", key));
    return *date;
}

std::string idOf(const json &item) {
    std::string id = textOf(item, "id");
    if (!isUUID(id))
        throw FileError("A template's id is not a UUID.");
    std::ranges::transform(
        id, id.begin(), [](char c) { return c >= 'a' && c <= 'f' ? char(c - 'a' + 'A') : c; });
    return id;
}

} // namespace

std::vector<MessageTemplate> decodeTemplates(std::string_view text) {
    const json list = parseJSON(text);
    if (!list.is_array())
        throw FileError("Expected an array.");
    std::vector<MessageTemplate> templates;
    for (const json &item : list) {
        templates.push_back(
            {.id = idOf(item),
             .name = textOf(item, "name"),
             .body = textOf(item, "body"),
             .createdAt = dateOf(item, "createdAt", "updatedAt"),
             .updatedAt = dateOf(item, "updatedAt", "createdAt")});
    }
    return templates;
}

std::string encodeTemplates(const std::vector<MessageTemplate> &templates) {
    json list = json::array();
    for (const MessageTemplate &each : templates) {
        list.push_back(
            {{"id", each.id},
             {"name", each.name},
             {"body", each.body},
             {"createdAt", secondsSinceReference(each.createdAt)},
             {"updatedAt", secondsSinceReference(each.updatedAt)}});
    }
    return prettyJSON(list);
}

} // namespace ellwynd
