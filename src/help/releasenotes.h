// The release notes, read from the changelog.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

struct Release {
    /// "0.1.0".
    std::string version;
    /// Markdown, as in the changelog.
    std::string notes;

    bool operator==(const Release &) const = default;
};

/// The sections of a changelog: a line "## " with the version, and the text up to the next one.
/// Text before the first section is ignored.
[[nodiscard]] std::vector<Release> parseChangelog(std::string_view changelog);

/// The program's own releases, newest first.
[[nodiscard]] std::vector<Release> releases();

} // namespace ellwynd
