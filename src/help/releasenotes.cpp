#include "help/releasenotes.h"

#include "base/text.h"
#include "help/resources.h"

#include <algorithm>

namespace ellwynd {

namespace {

constexpr std::string_view heading = "## ";

/// The position of the next section at or after `from`; the text's size if there is none.
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
            {std::string(trim(changelog.substr(at + heading.size(), line - at - heading.size()))),
             std::string(trim(changelog.substr(line, next - line)))});
        at = next;
    }
    return result;
}

std::vector<Release> releases() {
    return parseChangelog(resourceText("CHANGELOG.md"));
}

} // namespace ellwynd
