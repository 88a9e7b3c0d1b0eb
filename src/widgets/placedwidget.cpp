#include "widgets/placedwidget.h"

#include "base/files.h"
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
constexpr std::size_t mostWidgets = 32;
/// Beyond any desktop, and within the window system's own numbers.
constexpr std::int64_t farthest = 32'000;

/// In the order of WidgetSize.
constexpr std::array<std::string_view, 3> sizeNames{"small", "medium", "large"};

std::optional<std::int64_t> integer(const json &object, const char *key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_number_integer())
        return std::nullopt;
    return found->get<std::int64_t>();
}

std::optional<PlacedWidget> widgetFrom(const json &object) {
    if (!object.is_object())
        return std::nullopt;
    const auto name = object.find("size");
    if (name == object.end() || !name->is_string())
        return std::nullopt;
    const auto *size = std::ranges::find(sizeNames, name->get_ref<const std::string &>());
    if (size == sizeNames.end())
        return std::nullopt;
    PlacedWidget widget{
        .size = WidgetSize(size - sizeNames.begin()), .termID = integer(object, "term")};
    const auto x = integer(object, "x");
    const auto y = integer(object, "y");
    if (x && y && std::max(*x, *y) < farthest && std::min(*x, *y) > -farthest)
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
        const json object = json::parse(*text);
        for (const json &entry : object.at("widgets").get_ref<const json::array_t &>()) {
            const auto widget = widgetFrom(entry);
            if (widget && widgets.size() < mostWidgets)
                widgets.push_back(*widget);
        }
    } catch (const std::exception &error) {
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
        files::replace(file, json{{"widgets", std::move(list)}}.dump(2) + "\n");
    } catch (const std::exception &error) {
        logger.error(fmt::format("Couldn't save the placed widgets: {}", error.what()));
    }
}

} // namespace ellwynd
