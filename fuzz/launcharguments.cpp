// Launch arguments, one per line.
#include "preferences/launcharguments.h"

#include "fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    const std::string_view text = fuzz::text(data, size);
    std::vector<std::string> words;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        words.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    const LaunchArguments arguments = parseLaunchArguments(words);
    fuzz::require((words.size() - arguments.rest.size()) % 2 == 0);
    for (const auto &[key, value] : arguments.domain)
        fuzz::require(!key.empty() && !toJSON(value).empty());
    return 0;
}
