// Generates the command line's manual page from its template and the table of preferences.
#include "base/files.h"
#include "preferences/preferencekeys.h"

#include <fmt/format.h>

#include <iostream>

namespace ellwynd {
namespace {

constexpr std::string_view placeholder = "@PREFERENCES@\n";
constexpr std::size_t sizeLimit = 1024UL * 1024;

/// A sentence with the preference's valid values; empty if its default shows them.
std::string limits(const Preference &row) {
    const bool isBounded = row.range.outside == NumberRange::Outside::rejected &&
        (row.type == Preference::Type::integer || row.type == Preference::Type::real);
    if (!isBounded && row.choices.empty())
        return {};
    std::string text = row.acceptedValues() + ".\n";
    text.front() = char(std::toupper(text.front()));
    return text;
}

std::string defaultText(const Preference &row) {
    struct Text {
        std::string operator()(std::monostate) const { return "none"; }
        std::string operator()(bool on) const { return on ? "YES" : "NO"; }
        std::string operator()(std::string_view text) const {
            return std::string(text.empty() ? "empty" : text);
        }
        std::string operator()(std::int64_t number) const { return fmt::to_string(number); }
        std::string operator()(double number) const { return fmt::format("{}", number); }
    };
    return std::visit(Text(), row.fallback);
}

std::string preferenceList() {
    std::string list;
    for (const Preference &row : preferences::table) {
        if (row.isForTeachers())
            list += fmt::format(
                ".TP\n.BR {} \" ({})\"\n{}\n{}", row.key, defaultText(row), row.meaning,
                limits(row));
    }
    return list;
}

/// @throws FileError
void writeManual(const std::filesystem::path &from, const std::filesystem::path &to) {
    std::string page = files::read(from, sizeLimit).value_or("");
    const std::size_t at = page.find(placeholder);
    if (at == std::string::npos)
        throw FileError(fmt::format("{} has no line {}", from.string(), placeholder));
    files::replace(to, page.replace(at, placeholder.size(), preferenceList()));
}

} // namespace
} // namespace ellwynd

int main(int count, char **words) {
    if (count != 3) {
        std::cerr << "Usage: ellwynd-manual FROM TO\n";
        return 2;
    }
    try {
        ellwynd::writeManual(words[1], words[2]);
    } catch (const std::exception &error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
    return 0;
}
