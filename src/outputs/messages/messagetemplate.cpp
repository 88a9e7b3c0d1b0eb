#include "outputs/messages/messagetemplate.h"

#include "base/text.h"
#include "risk/reasons.h"

#include <QUuid>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace ellwynd {

namespace {

using Placeholder = MessageTemplate::Placeholder;
/// Indexed by placeholder; an empty text means no value.
using Values = std::array<std::string, placeholders.size()>;

Values
valuesOf(const RiskRow &row, const std::optional<std::string> &courseName, double passingScore) {
    std::vector<std::string> missing;
    std::vector<std::string> lines;
    for (AssignmentRef &assignment : missingAssignments(row)) {
        lines.push_back("    – " + assignment.name);
        missing.push_back(std::move(assignment.name));
    }
    Values values;
    const auto set = [&values](Placeholder placeholder, std::string text) {
        values[std::size_t(placeholder)] = std::move(text);
    };
    set(Placeholder::firstName, firstNameOf(row.name));
    set(Placeholder::name, row.name);
    set(Placeholder::course, courseName.value_or(row.courseName));
    if (row.level)
        set(Placeholder::flag, std::string(levelName(*row.level)));
    if (row.currentScore)
        set(Placeholder::score, roundedText(*row.currentScore) + "%");
    set(Placeholder::passing, roundedText(passingScore) + "%");
    if (!missing.empty())
        set(Placeholder::missingCount, std::to_string(missing.size()));
    set(Placeholder::missingList, join(missing, ", "));
    set(Placeholder::missingLines, join(lines, "\n"));
    return values;
}

/// Replaces every occurrence in the original text; inserted values are not searched.
std::string replaced(std::string_view text, std::string_view token, std::string_view value) {
    std::string result;
    std::size_t copied = 0;
    for (std::size_t at = text.find(token); at != std::string_view::npos;
         at = text.find(token, copied)) {
        result.append(text.substr(copied, at - copied)).append(value);
        copied = at + token.size();
    }
    return result.append(text.substr(copied));
}

/// Absent if the line has a placeholder without a value.
std::optional<std::string> filledLine(std::string line, const Values &values) {
    for (const PlaceholderText &placeholder : placeholders) {
        if (line.find(placeholder.token) == std::string::npos)
            continue;
        const std::string &value = values[std::size_t(placeholder.placeholder)];
        if (value.empty())
            return std::nullopt;
        line = replaced(line, placeholder.token, value);
    }
    return line;
}

constexpr std::string_view emailBody = "Subject: Checking in — {course}\n"
                                       "\n"
                                       "Hi {first_name},\n"
                                       "\n"
                                       "I was going through how everyone is doing in {course} and "
                                       "wanted to check in. Here is what I am seeing:\n"
                                       "\n"
                                       "• {missing_count} assignment(s) showing as missing:\n"
                                       "{missing_lines}\n"
                                       "• Your current score is {score}, and passing is "
                                       "{passing}.\n"
                                       "\n"
                                       "If something is getting in the way, reply and let me know "
                                       "— we can work out a plan to catch up.";

constexpr std::string_view shortBody = "Hi {first_name} — quick check-in on {course}.\n"
                                       "\n"
                                       "Missing ({missing_count}):\n"
                                       "{missing_lines}\n"
                                       "\n"
                                       "Current score: {score}, passing is {passing}\n"
                                       "\n"
                                       "If something is getting in the way, let me know and we'll "
                                       "sort out a plan.";

constexpr std::string_view referralBody = "{name} — {course}\n"
                                          "Flag: {flag}\n"
                                          "Current score: {score} (passing {passing})\n"
                                          "Missing ({missing_count}):\n"
                                          "{missing_lines}";

} // namespace

MessageTemplate newTemplate(std::string name, std::string body, Date now) {
    return {
        .id = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString(),
        .name = std::move(name),
        .body = std::move(body),
        .createdAt = now,
        .updatedAt = now};
}

std::vector<MessageTemplate> defaultTemplates(Date now) {
    return {
        newTemplate("Email", std::string(emailBody), now),
        newTemplate("Short Message", std::string(shortBody), now),
        newTemplate("Referral Summary", std::string(referralBody), now)};
}

std::vector<TextRange> unknownPlaceholders(QStringView text) {
    constexpr qsizetype maxLength = 40;
    std::vector<TextRange> unknown;
    qsizetype open = -1;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'{') {
            open = i;
        } else if (c == u'\n' || c == QChar::ParagraphSeparator || c == QChar::LineSeparator) {
            open = -1;
        } else if (c == u'}' && open >= 0) {
            const QStringView token = text.sliced(open, i + 1 - open);
            const bool known = std::ranges::any_of(placeholders, [token](const auto &each) {
                return token == QLatin1StringView(each.token.data(), qsizetype(each.token.size()));
            });
            if (!known && token.size() <= maxLength)
                unknown.push_back({open, i + 1});
            open = -1;
        }
    }
    return unknown;
}

std::string unfinishedPlaceholder(std::string_view line) {
    const std::size_t open = line.rfind('{');
    if (open == std::string_view::npos)
        return {};
    const std::string_view token = line.substr(open);
    const bool isName = std::ranges::all_of(token.substr(1), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    });
    return isName ? std::string(token) : std::string();
}

std::string titleOf(const MessageTemplate &message) {
    const std::string line = QString::fromStdString(message.name).simplified().toStdString();
    return line.empty() ? "(no name)" : line;
}

std::string firstNameOf(const std::string &name) {
    const std::size_t begin = name.find_first_not_of(' ');
    if (begin == std::string::npos)
        return name;
    return name.substr(begin, name.find(' ', begin) - begin);
}

std::string fill(
    const MessageTemplate &message, const RiskRow &row,
    const std::optional<std::string> &courseName, double passingScore) {
    const Values values = valuesOf(row, courseName, passingScore);
    const std::string &body = message.body;
    std::vector<std::string> kept;
    for (std::size_t begin = 0; begin <= body.size();) {
        const std::size_t end = std::min(body.find('\n', begin), body.size());
        if (auto line = filledLine(body.substr(begin, end - begin), values))
            kept.push_back(std::move(*line));
        begin = end + 1;
    }
    return QString::fromStdString(join(kept, "\n")).trimmed().toStdString();
}

std::string fillAll(
    const MessageTemplate &message, const SharedList<RiskRow> &rows,
    const std::optional<std::string> &courseName,
    const std::function<double(std::int64_t courseID)> &passingScoreOf) {
    std::vector<std::string> messages;
    for (const RiskRow &row : rows)
        messages.push_back(fill(message, row, courseName, passingScoreOf(row.courseID)));
    return join(messages, "\n\n");
}

} // namespace ellwynd
