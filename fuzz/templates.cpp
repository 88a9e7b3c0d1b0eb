// The template file, and filling in its templates.
#include "base/files.h"
#include "fuzz/target.h"
#include "outputs/messages/templatefile.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    std::vector<MessageTemplate> templates;
    try {
        templates = decodeTemplates(std::string(fuzz::text(data, size)));
    } catch (const FileError &) {
        return 0;
    }
    // Templates round-trip.
    fuzz::require(decodeTemplates(encodeTemplates(templates)) == templates);
    for (const MessageTemplate &each : templates) {
        const std::string filled = fill(each, {.id = 1, .name = each.name}, each.name, 70);
        fuzz::require(filled.empty() || filled.back() != '\n');
    }
    return 0;
}
