#include "outputs/messages/templatefile.h"

#include "base/files.h"
#include "base/referencedate.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace ellwynd {

namespace {

// Sorts its keys.
using JSON = nlohmann::json;

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

/// The standard form, 8-4-4-4-12 digits.
bool isUUID(std::string_view text) {
    constexpr std::string_view form = "00000000-0000-0000-0000-000000000000";
    return std::ranges::equal(
        text, form, [](char c, char place) { return place == '-' ? c == '-' : isHexDigit(c); });
}

const JSON &member(const JSON &item, const char *key) {
    const auto found = item.find(key);
    if (found == item.end())
        throw FileError(fmt::format("A template has no {}.", key));
    return *found;
}

std::string textOf(const JSON &item, const char *key) {
    const JSON &value = member(item, key);
    if (!value.is_string())
        throw FileError(fmt::format("{} is no text.", key));
    return value.get<std::string>();
}

Date dateOf(const JSON &item, const char *key) {
    const JSON &value = member(item, key);
    const auto date = value.is_number() ? dateSinceReference(value.get<double>()) : std::nullopt;
    if (!date)
        throw FileError(fmt::format("{} is no date.", key));
    return *date;
}

std::string idOf(const JSON &item) {
    std::string id = textOf(item, "id");
    if (!isUUID(id))
        throw FileError("id is no UUID.");
    std::ranges::transform(
        id, id.begin(), [](char c) { return c >= 'a' && c <= 'f' ? char(c - 'a' + 'A') : c; });
    return id;
}

JSON parse(const std::string &text) {
    // A list of objects of texts and numbers; whoever nests deeper only means to fill the memory.
    constexpr int deepest = 8;
    const auto watchDepth = [](int depth, JSON::parse_event_t, const JSON &) {
        if (depth > deepest)
            throw FileError("It is nested too deeply.");
        return true;
    };
    try {
        return JSON::parse(text, watchDepth);
    } catch (const JSON::exception &) {
        // The library's message would quote the text, in which a teacher may have named a student.
        throw FileError("It is not valid JSON.");
    }
}

} // namespace

std::vector<MessageTemplate> decodeTemplates(const std::string &text) {
    const JSON list = parse(text);
    if (!list.is_array())
        throw FileError("It is no list.");
    std::vector<MessageTemplate> templates;
    for (const JSON &item : list) {
        templates.push_back(
            {.id = idOf(item),
             .name = textOf(item, "name"),
             .body = textOf(item, "body"),
             .createdAt = dateOf(item, "createdAt"),
             .updatedAt = dateOf(item, "updatedAt")});
    }
    return templates;
}

std::string encodeTemplates(const std::vector<MessageTemplate> &templates) {
    JSON list = JSON::array();
    for (const MessageTemplate &each : templates) {
        list.push_back(
            {{"id", each.id},
             {"name", each.name},
             {"body", each.body},
             {"createdAt", secondsSinceReference(each.createdAt)},
             {"updatedAt", secondsSinceReference(each.updatedAt)}});
    }
    return list.dump(2, ' ', false, JSON::error_handler_t::replace) + "\n";
}

} // namespace ellwynd
