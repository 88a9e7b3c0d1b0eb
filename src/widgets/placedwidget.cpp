#include "widgets/placedwidget.h"

#include "base/files.h"
#include "base/json.h"
#include "base/log.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace ellwynd {

namespace {

using nlohmann::json;

constexpr Log logger{"widgets"};
constexpr std::size_t fileLimit = 64UL * 1024;
constexpr std::size_t maxWidgets = 32;
/// Larger than any desktop, and within the window system's 16-bit coordinates.
constexpr std::int64_t maxDistance = 32'000;

/// In the order of WidgetSize.
constexpr std::array<std::string_view, 3> sizeNames{"small", "medium", "large"};

std::optional<PlacedWidget> widgetFrom(const json &object) {
    const auto name = stringOf(memberOf(object, "size"));
    const auto *size = std::ranges::find(sizeNames, name.value_or(""));
    if (size == sizeNames.end())
        return std::nullopt;
    PlacedWidget widget{
        .size = WidgetSize(size - sizeNames.begin()),
        .termID = integerOf(memberOf(object, "term"))};
    const auto x = integerOf(memberOf(object, "x"));
    const auto y = integerOf(memberOf(object, "y"));
    if (x && y && std::max(*x, *y) < maxDistance && std::min(*x, *y) > -maxDistance)
        widget.place = QPoint(int(*x), int(*y));
    return widget;
}

json asJSON(const PlacedWidget &widget) {
    json object{{"size", sizeNames[std::size_t(widget.size)]}};
    if (widget.termID)
        object["term"] = *widget.termID;
    if (widget.place) {
        object["x"] = widget.place->x();
        object["y"] = widget.place->y();
    }
    return object;
}

} // namespace

std::vector<PlacedWidget> readPlacedWidgets(const std::filesystem::path &file) {
    std::vector<PlacedWidget> widgets;
    try {
        const auto text = files::read(file, fileLimit);
        if (!text)
            return widgets;
        const json object = parseJSON(*text);
        const json &list = memberOf(object, "widgets");
        if (!list.is_array())
            throw FileError("Expected an array of widgets.");
        for (const json &entry : list) {
            const auto widget = widgetFrom(entry);
            if (widget && widgets.size() < maxWidgets)
                widgets.push_back(*widget);
        }
    } catch (const FileUnavailable &) {
        throw;
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't read the placed widgets: {}", error.what()));
    }
    return widgets;
}

void savePlacedWidgets(
    const std::filesystem::path &file, const std::vector<PlacedWidget> &widgets) {
    json list = json::array();
    for (const PlacedWidget &widget : widgets)
        list.push_back(asJSON(widget));
    try {
        files::replace(file, prettyJSON({{"widgets", std::move(list)}}));
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't save the placed widgets: {}", error.what()));
    }
}

} // namespace ellwynd
