// The texts about copying messages for students.
#pragma once

#include "risk/riskrow.h"

#include <string>
#include <vector>

namespace ellwynd::messagetexts {

/// After messages were copied together: "Copied 3 messages, one below the other. Send each to its
/// own student."
[[nodiscard]] std::string copied(std::size_t messages);

/// "Copied for 3 students"
[[nodiscard]] std::string copiedFor(std::size_t students);

/// "On the clipboard: the message for Ada Lovelace"; of several messages as `copied`; empty for
/// none.
[[nodiscard]] std::string onClipboard(const std::vector<std::string> &students);

/// The command for these students: "Write to Ada", "Write to 3 Students".
[[nodiscard]] std::string writeTo(const SharedList<RiskRow> &students);

/// "1 student skipped"; empty for none.
[[nodiscard]] std::string skipped(std::size_t students);

/// "2 edited messages have not been copied."
[[nodiscard]] std::string uncopied(std::size_t messages);

/// What is wrong with a template, one sentence a line: that it has no name or no text, and which
/// text in braces is no placeholder. Empty if nothing is.
[[nodiscard]] std::string templateProblems(const std::string &name, const std::string &body);

inline constexpr std::string_view emptyMessage =
    "The message is empty. Choose another template, or write the message.";
/// The preview of a template of which nothing is left for a student.
inline constexpr std::string_view emptyPreview =
    "The message is empty: every line has a placeholder without a value.";
inline constexpr std::string_view clipboardFailed =
    "Nothing was copied, because another program holds the clipboard. Try again.";
inline constexpr std::string_view tooLong =
    "Nothing was copied: together, the messages are too long. Copy them one at a time.";
inline constexpr std::string_view noTemplates = "No templates — add one in Settings";

} // namespace ellwynd::messagetexts
