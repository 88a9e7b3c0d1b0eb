// Deep links.
#include "app/shell/deeplink.h"

#include "fuzz/target.h"

#include <string>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    const std::string_view text = fuzz::text(data, size);
    if (const auto id = courseOfLink(text)) {
        fuzz::require(looksLikeLink(text));
        fuzz::require(courseOfLink("ellwynd://course/" + std::to_string(*id)) == id);
    }
    return 0;
}
