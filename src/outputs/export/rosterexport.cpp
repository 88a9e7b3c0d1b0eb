#include "outputs/export/rosterexport.h"

#include "base/calendar.h"
#include "base/text.h"
#include "risk/reasons.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace ellwynd {

namespace {

/// The reasons in one line. A sentence that ends in a colon is followed by the missing work.
std::string reasonsText(const RiskRow &row) {
    std::vector<std::string> sentences;
    for (const ReasonLine &line : row.reasonLines) {
        std::string sentence = line.text;
        if (sentence.ends_with(':')) {
            std::vector<std::string> names;
            for (AssignmentRef &assignment : missingAssignments(row))
                names.push_back(std::move(assignment.name));
            sentence += fmt::format(" {}", join(names, ", "));
        }
        sentences.push_back(std::move(sentence));
    }
    return join(sentences, "; ");
}

std::string csvCell(const std::string &cell) {
    // CSV readers treat a carriage return as the end of a row too.
    if (cell.find_first_of(",\"\n\r") == std::string::npos)
        return cell;
    std::string quoted = "\"";
    for (const char c : cell) {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

/// Replaces every LF, CR and CR LF by a space.
std::string withoutLineBreaks(std::string_view text) {
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        line += text[i] == '\n' || text[i] == '\r' ? ' ' : text[i];
    }
    return line;
}

std::string markdownCell(const std::string &cell) {
    std::string escaped;
    for (const char c : withoutLineBreaks(cell)) {
        if (c == '|')
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

std::string joined(
    std::vector<std::string> cells, std::string (*form)(const std::string &),
    std::string_view separator) {
    std::ranges::transform(cells, cells.begin(), form);
    return join(cells, separator);
}

std::string csvLine(std::vector<std::string> cells) {
    return joined(std::move(cells), csvCell, ",") + "\n";
}

std::string markdownLine(std::vector<std::string> cells) {
    return "| " + joined(std::move(cells), markdownCell, " | ") + " |\n";
}

} // namespace

std::vector<std::string> exportHeaders(bool wholeTerm) {
    std::vector<std::string> headers{"Risk", "Student"};
    if (wholeTerm)
        headers.emplace_back("Course");
    for (const char *header :
         {"Current score", "Grade", "Missing", "Last active", "Why", "Contacted", "Since contact"})
        headers.emplace_back(header);
    return headers;
}

std::vector<std::string> exportRow(const RiskRow &row, const ExportSource &source) {
    const auto since = lastOutcome(row, source.contacts, source.history, source.now);
    std::vector<std::string> cells{
        row.level ? std::string(levelName(*row.level)) : std::string(), row.name};
    if (source.wholeTerm)
        cells.push_back(row.courseName);
    cells.push_back(row.currentScore ? roundedText(*row.currentScore) + "%" : "");
    cells.push_back(row.currentGrade.value_or(""));
    cells.push_back(row.missingCount > 0 ? std::to_string(row.missingCount) : "");
    cells.push_back(row.lastActivityAt ? calendar::dayKey(*row.lastActivityAt) : "never");
    cells.push_back(reasonsText(row));
    cells.push_back(since ? calendar::dayKey(since->contactedAt) : "");
    cells.push_back(since ? outcomeLabel(*since) : "");
    return cells;
}

std::string outcomeLabel(const OutreachOutcome &outcome) {
    return std::string(outcomeWord(outcome)) +
        (isAwaitingFollowUp(outcome) ? " — awaiting follow-up" : "");
}

std::string csv(const SharedList<RiskRow> &rows, const ExportSource &source) {
    std::string text = csvLine(exportHeaders(source.wholeTerm));
    for (const RiskRow &row : rows)
        text += csvLine(exportRow(row, source));
    return text;
}

std::string
markdown(std::string_view title, const SharedList<RiskRow> &rows, const ExportSource &source) {
    std::vector<std::string> headers = exportHeaders(source.wholeTerm);
    // A heading is one line.
    std::string text = fmt::format(
        "# {}\n\nExported from Ellwynd on {}.\n\n", withoutLineBreaks(title),
        calendar::dayKey(source.now));
    std::string separator = "|";
    for (std::size_t column = 0; column < headers.size(); ++column)
        separator += " --- |";
    text += markdownLine(std::move(headers)) + separator + "\n";
    for (const RiskRow &row : rows)
        text += markdownLine(exportRow(row, source));
    return text;
}

std::string exportText(
    ExportFormat format, std::string_view title, const SharedList<RiskRow> &rows,
    const ExportSource &source) {
    return format == ExportFormat::csv ? csv(rows, source) : markdown(title, rows, source);
}

std::string exportFileName(ExportFormat format, std::string_view title, Date now) {
    return exportFileName(format == ExportFormat::csv ? "csv" : "md", title, now);
}

std::string exportFileName(std::string_view extension, std::string_view title, Date now) {
    std::string name(title);
    std::ranges::replace_if(
        name, [](char c) { return c == '/' || c == ':'; }, '-');
    const auto withTitle = [&](std::string_view shown) {
        return fmt::format("Ellwynd — {} — {}.{}", shown, calendar::dayKey(now), extension);
    };
    // File systems take 255 bytes; some are left for the name of a temporary file.
    constexpr std::size_t maxSize = 240;
    std::string result = withTitle(name);
    for (std::size_t length = name.size(); result.size() > maxSize && length > 0; --length)
        result = withTitle(shortened(name, length));
    return result;
}

} // namespace ellwynd
