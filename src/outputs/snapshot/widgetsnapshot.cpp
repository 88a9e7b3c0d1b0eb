#include "outputs/snapshot/widgetsnapshot.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>

namespace ellwynd {

namespace {

using nlohmann::json;

/// Far beyond what any institution has at a time, and still a menu.
constexpr std::size_t mostTerms = 1000;

json asJSON(const WidgetCourseSummary &course) {
    json object{
        {"id", course.id},
        {"atRisk", course.atRisk},
        {"concern", course.concern},
        {"watch", course.watch},
        {"total", course.total}};
    if (course.name)
        object["name"] = *course.name;
    return object;
}

json asJSON(const std::vector<WidgetCourseSummary> &courses) {
    json array = json::array();
    for (const WidgetCourseSummary &course : courses)
        array.push_back(asJSON(course));
    return array;
}

std::string prettyPrinted(const json &object) {
    return object.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

/// What ends the reading of a file that is no snapshot.
class Malformed : public std::runtime_error {
  public:
    Malformed() : std::runtime_error("no widget snapshot") {}
};

bool refuseDepth(int depth, json::parse_event_t, json &) {
    constexpr int deepest = 64;
    if (depth > deepest)
        throw Malformed();
    return true;
}

std::int64_t integer(const json &value) {
    if (!value.is_number_integer() ||
        (value.is_number_unsigned() && value.get<std::uint64_t>() > std::uint64_t(INT64_MAX)))
        throw Malformed();
    return value.get<std::int64_t>();
}

/// Bounded, so that the counts of a whole file can be added up.
std::int64_t count(const json &value) {
    constexpr std::int64_t most = 1'000'000'000;
    const std::int64_t number = integer(value);
    if (number < 0 || number > most)
        throw Malformed();
    return number;
}

WidgetCourseSummary courseSummary(const json &object) {
    WidgetCourseSummary course{
        .id = integer(object.at("id")),
        .atRisk = count(object.at("atRisk")),
        .concern = count(object.at("concern")),
        .watch = count(object.at("watch")),
        .total = count(object.at("total"))};
    if (const auto name = object.find("name"); name != object.end())
        course.name = name->get<std::string>();
    return course;
}

WidgetTermSummary termSummary(const json &object) {
    WidgetTermSummary term{
        .id = integer(object.at("id")), .title = object.at("title").get<std::string>()};
    for (const json &course : object.at("courses").get_ref<const json::array_t &>())
        term.courses.push_back(courseSummary(course));
    return term;
}

} // namespace

const WidgetTermSummary *findTerm(const WidgetSnapshotFile &file, std::int64_t id) {
    const auto found = std::ranges::find(file.terms, id, &WidgetTermSummary::id);
    return found != file.terms.end() ? &*found : nullptr;
}

std::optional<WidgetSnapshot> automaticSnapshot(const WidgetSnapshotFile &file) {
    const WidgetTermSummary *term = findTerm(file, file.automaticTermID);
    if (term == nullptr)
        return std::nullopt;
    return WidgetSnapshot{
        .updatedAt = file.updatedAt, .termTitle = term->title, .courses = term->courses};
}

std::string encode(const WidgetSnapshotFile &file) {
    json terms = json::array();
    for (const WidgetTermSummary &term : file.terms) {
        terms.push_back(
            {{"id", term.id}, {"title", term.title}, {"courses", asJSON(term.courses)}});
    }
    return prettyPrinted(
        {{"updatedAt", formatInstant(file.updatedAt)},
         {"automaticTermID", file.automaticTermID},
         {"terms", std::move(terms)}});
}

std::string encode(const WidgetSnapshot &snapshot) {
    return prettyPrinted(
        {{"updatedAt", formatInstant(snapshot.updatedAt)},
         {"termTitle", snapshot.termTitle},
         {"courses", asJSON(snapshot.courses)}});
}

std::optional<WidgetSnapshotFile> decodeWidgetSnapshotFile(std::string_view text) {
    try {
        const json object = json::parse(text, refuseDepth);
        const auto updatedAt = parseInstant(object.at("updatedAt").get_ref<const std::string &>());
        if (!updatedAt)
            return std::nullopt;
        WidgetSnapshotFile file{
            .updatedAt = *updatedAt, .automaticTermID = integer(object.at("automaticTermID"))};
        const auto &terms = object.at("terms").get_ref<const json::array_t &>();
        if (terms.size() > mostTerms)
            return std::nullopt;
        for (const json &term : terms)
            file.terms.push_back(termSummary(term));
        return file;
    } catch (const json::exception &) {
        return std::nullopt;
    } catch (const Malformed &) {
        return std::nullopt;
    }
}

} // namespace ellwynd
