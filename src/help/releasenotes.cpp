#include "help/releasenotes.h"

#include "base/embeddedtext.h"

#include <algorithm>

namespace ellwynd {

std::span<const EmbeddedText> changelogText();

namespace {

constexpr std::string_view heading = "## ";

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(" \r\n"), text.size());
    const std::size_t end = text.find_last_not_of(" \r\n") + 1;
    return begin < end ? text.substr(begin, end - begin) : std::string_view();
}

/// Where the next section begins, at or after `from`.
std::size_t nextHeading(std::string_view text, std::size_t from) {
    if (from == 0 && text.starts_with(heading))
        return 0;
    const std::size_t found = text.find("\n## ", from);
    return found == std::string_view::npos ? text.size() : found + 1;
}

} // namespace

std::vector<Release> parseChangelog(std::string_view changelog) {
    std::vector<Release> result;
    for (std::size_t at = nextHeading(changelog, 0); at < changelog.size();) {
        const std::size_t line = std::min(changelog.find('\n', at), changelog.size());
        const std::size_t next = nextHeading(changelog, line);
        result.push_back(
            {std::string(
                 trimmed(changelog.substr(at + heading.size(), line - at - heading.size()))),
             std::string(trimmed(changelog.substr(line, next - line)))});
        at = next;
    }
    return result;
}

std::vector<Release> releases() {
    return parseChangelog(changelogText().front().text);
}

} // namespace ellwynd
