#include "app/messages/messagetexts.h"

#include "base/text.h"
#include "outputs/messages/messagetemplate.h"

#include <QStringList>

#include <fmt/format.h>

namespace ellwynd::messagetexts {

namespace {

constexpr std::size_t maxNameLength = 40;
constexpr std::size_t maxFirstNameLength = 20;

} // namespace

std::string copied(std::size_t messages) {
    if (messages == 1)
        return "Copied. Paste it where you write your message.";
    return fmt::format(
        "Copied {} messages, one below the other. Send each to its own student.", messages);
}

std::string copiedFor(std::size_t students) {
    return "Copied for " + plural(std::int64_t(students), "student");
}

std::string onClipboard(const std::vector<std::string> &students) {
    if (students.empty())
        return {};
    if (students.size() > 1)
        return copied(students.size());
    return "On the clipboard: the message for " + shortened(students.front(), maxNameLength);
}

std::string writeTo(const SharedList<RiskRow> &students) {
    if (students.size() != 1)
        return fmt::format("Write to {} Students", students.size());
    return "Write to " + shortened(firstNameOf(students.front().name), maxFirstNameLength);
}

std::string skipped(std::size_t students) {
    return students == 0 ? std::string() : plural(std::int64_t(students), "student") + " skipped";
}

std::string uncopied(std::size_t messages) {
    return fmt::format(
        "{} {} not been copied.", plural(std::int64_t(messages), "edited message"),
        pluralForm(std::int64_t(messages), "has", "have"));
}

std::string templateProblems(const std::string &name, const std::string &body) {
    std::vector<std::string> problems;
    if (QString::fromStdString(name).trimmed().isEmpty())
        problems.emplace_back("This template has no name. It is listed as “(no name)”.");
    const QString text = QString::fromStdString(body);
    if (text.trimmed().isEmpty())
        problems.emplace_back("This template has no text, so there is nothing to copy.");
    constexpr std::size_t listed = 3;
    QStringList unknown;
    for (const auto &[begin, end] : unknownPlaceholders(text)) {
        const QString token = text.sliced(begin, end - begin);
        if (!unknown.contains(token) && std::size_t(unknown.size()) < listed)
            unknown.append(token);
    }
    if (!unknown.isEmpty())
        problems.push_back(
            "Not a placeholder, so it stays as it is: " +
            unknown.join(QStringLiteral(", ")).toStdString());
    return join(problems, "\n");
}

} // namespace ellwynd::messagetexts
