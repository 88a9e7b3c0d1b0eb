#include "outputs/snapshot/widgetsnapshot.h"

#include "base/files.h"
#include "base/json.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>

namespace ellwynd {

namespace {

using nlohmann::json;

/// Far more than any institution has, and still usable as a menu.
constexpr std::size_t maxTerms = 1000;

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

/// Thrown for a text that is not a snapshot.
class Malformed : public std::runtime_error {
  public:
    Malformed() : std::runtime_error("not a widget snapshot") {}
};

template<class T>
T required(std::optional<T> value) {
    if (!value)
        throw Malformed();
    return std::move(*value);
}

const json &arrayOf(const json &object, const char *key) {
    const json &list = memberOf(object, key);
    if (!list.is_array())
        throw Malformed();
    return list;
}

/// Bounded, so that the sum of all counts of a file cannot overflow.
std::int64_t countOf(const json &object, const char *key) {
    constexpr std::int64_t maxCount = 1'000'000'000;
    const std::int64_t count = required(integerOf(memberOf(object, key)));
    if (count < 0 || count > maxCount)
        throw Malformed();
    return count;
}

bool hasNumberOutOfRange(const json &object, std::initializer_list<const char *> keys) {
    return std::ranges::any_of(keys, [&](const char *key) { return isOutOfRange(object, key); });
}

WidgetCourseSummary courseSummary(const json &object) {
    WidgetCourseSummary course{
        .id = required(integerOf(memberOf(object, "id"))),
        .atRisk = countOf(object, "atRisk"),
        .concern = countOf(object, "concern"),
        .watch = countOf(object, "watch"),
        .total = countOf(object, "total")};
    if (object.contains("name"))
        course.name = required(stringOf(memberOf(object, "name")));
    return course;
}

WidgetTermSummary termSummary(const json &object) {
    WidgetTermSummary term{
        .id = required(integerOf(memberOf(object, "id"))),
        .title = required(stringOf(memberOf(object, "title")))};
    for (const json &course : arrayOf(object, "courses")) {
        if (!hasNumberOutOfRange(course, {"id", "atRisk", "concern", "watch", "total"}))
            term.courses.push_back(courseSummary(course));
    }
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
    return prettyJSON(
        {{"updatedAt", formatInstant(file.updatedAt)},
         {"automaticTermID", file.automaticTermID},
         {"terms", std::move(terms)}});
}

std::string encode(const WidgetSnapshot &snapshot) {
    return prettyJSON(
        {{"updatedAt", formatInstant(snapshot.updatedAt)},
         {"termTitle", snapshot.termTitle},
         {"courses", asJSON(snapshot.courses)}});
}

std::optional<WidgetSnapshotFile> decodeWidgetSnapshotFile(std::string_view text) {
    try {
        const json object = parseJSON(text);
        WidgetSnapshotFile file{
            .updatedAt = required(parseInstant(required(stringOf(memberOf(object, "updatedAt"))))),
            // Without one, only the chosen terms are shown.
            .automaticTermID = isOutOfRange(object, "automaticTermID")
                ? 0
                : required(integerOf(memberOf(object, "automaticTermID")))};
        const json &terms = arrayOf(object, "terms");
        if (terms.size() > maxTerms)
            return std::nullopt;
        for (const json &term : terms) {
            if (!isOutOfRange(term, "id"))
                file.terms.push_back(termSummary(term));
        }
        return file;
    } catch (const FileError &) {
        return std::nullopt;
    } catch (const Malformed &) {
        return std::nullopt;
    }
}

} // namespace ellwynd
