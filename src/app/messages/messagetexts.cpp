#include "app/messages/messagetexts.h"

#include "base/text.h"
#include "outputs/messages/messagetemplate.h"

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

std::string writeTo(const std::vector<RiskRow> &students) {
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

} // namespace ellwynd::messagetexts
