// Message templates with placeholders, which are filled in for a student.
#pragma once

#include "base/date.h"
#include "risk/riskrow.h"

#include <QString>

#include <array>
#include <functional>

namespace ellwynd {

struct MessageTemplate {
    enum class Placeholder {
        firstName,
        name,
        course,
        flag,
        score,
        passing,
        missingCount,
        missingList,
        missingLines,
    };

    /// A UUID as 36 characters in upper case; never shown.
    std::string id;
    /// Shown in menus and settings.
    std::string name;
    /// Lines are separated by "\n".
    std::string body;
    Date createdAt;
    Date updatedAt;

    bool operator==(const MessageTemplate &) const = default;
};

/// A placeholder's token, and its description in the settings.
struct PlaceholderText {
    MessageTemplate::Placeholder placeholder;
    /// With braces, as in a body.
    std::string_view token;
    std::string_view meaning;
};

/// In the order in which they are filled in.
inline constexpr std::array<PlaceholderText, 9> placeholders{{
    {MessageTemplate::Placeholder::firstName, "{first_name}", "the student’s first name"},
    {MessageTemplate::Placeholder::name, "{name}", "the student’s full name"},
    {MessageTemplate::Placeholder::course, "{course}", "the course’s name"},
    {MessageTemplate::Placeholder::flag, "{flag}", "At Risk, Concern or Watch"},
    {MessageTemplate::Placeholder::score, "{score}", "the current score, such as 73%"},
    {MessageTemplate::Placeholder::passing, "{passing}", "the course’s passing score"},
    {MessageTemplate::Placeholder::missingCount, "{missing_count}",
     "how many assignments are missing"},
    {MessageTemplate::Placeholder::missingList, "{missing_list}",
     "the missing assignments in one line"},
    {MessageTemplate::Placeholder::missingLines, "{missing_lines}",
     "the missing assignments, one a line"},
}};

/// Where a text has braces, on one line, around a few characters that are no placeholder: most
/// likely a mistyped one. Half-open, in UTF-16 units.
struct TextRange {
    qsizetype begin = 0;
    qsizetype end = 0;

    bool operator==(const TextRange &) const = default;
};
[[nodiscard]] std::vector<TextRange> unknownPlaceholders(QStringView text);

/// The beginning of a placeholder at the end of a line, such as "{mis"; empty if there is none.
[[nodiscard]] std::string unfinishedPlaceholder(std::string_view line);

/// "Email", "Short Message" and "Referral Summary", each with a new id.
[[nodiscard]] std::vector<MessageTemplate> defaultTemplates(Date now);

/// A template with a new id, created now.
[[nodiscard]] MessageTemplate newTemplate(std::string name, std::string body, Date now);

/// The name on one line for lists and menus; "(no name)" for a template without one.
[[nodiscard]] std::string titleOf(const MessageTemplate &message);

/// The first word of a name, the value of {first_name}; the whole name if it has no word.
[[nodiscard]] std::string firstNameOf(const std::string &name);

/// The message for one student. A line with a placeholder that has no value is omitted; other text
/// in braces is kept. Placeholders are filled in one after the other, so a value that contains a
/// later placeholder is filled in as well.
/// @param courseName if absent, that of the row.
/// @param passingScore percent.
[[nodiscard]] std::string fill(
    const MessageTemplate &message, const RiskRow &row,
    const std::optional<std::string> &courseName, double passingScore);

/// The messages for several students in the order of their rows, separated by blank lines.
/// @param passingScoreOf returns the passing score of a course, since rows may span courses.
[[nodiscard]] std::string fillAll(
    const MessageTemplate &message, const SharedList<RiskRow> &rows,
    const std::optional<std::string> &courseName,
    const std::function<double(std::int64_t courseID)> &passingScoreOf);

} // namespace ellwynd
