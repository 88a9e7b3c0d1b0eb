// The update feed, and the comparison of builds.
#include "app/updates/appcast.h"

#include "fuzz/target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    const std::string_view text = fuzz::text(data, size);
    fuzz::require(!isNewerBuild(text, text));
    fuzz::require(!(isNewerBuild(text, "1.2") && isNewerBuild("1.2", text)));
    try {
        const auto update = newestUpdate(text);
        // The update's build can be compared, and its version fits a line.
        fuzz::require(!update || isNewerBuild(update->build + "1", update->build));
        fuzz::require(!update || (!update->version.empty() && update->version.size() < 300));
    } catch (const UpdateError &) {
        return 0;
    }
    return 0;
}
