// What changed from version to version.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

struct Release {
    /// "0.1.0".
    std::string version;
    /// Markdown, as the changelog has it.
    std::string notes;

    bool operator==(const Release &) const = default;
};

/// The sections of a changelog: a line "## " with the version, and the text up to the next one.
/// Text before the first section is left out.
[[nodiscard]] std::vector<Release> parseChangelog(std::string_view changelog);

/// The program's own releases, newest first.
[[nodiscard]] std::vector<Release> releases();

} // namespace ellwynd
