// The widget file, and what a widget makes of it.
#include "fuzz/target.h"
#include "outputs/snapshot/widgettexts.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    const auto file = decodeWidgetSnapshotFile(fuzz::text(data, size));
    constexpr std::size_t room = 3;
    const WidgetContent content = widgetContent(file, 10, room, Date{});
    fuzz::require(content.rows.size() <= room && content.flagged >= 0);
    fuzz::require(content.message.empty() == (file && shownTerm(*file, 10) != nullptr));
    if (!file)
        return 0;
    // What was read can be written and read back, to the second.
    const auto again = decodeWidgetSnapshotFile(encode(*file));
    const bool fourDigitYear = formatInstant(file->updatedAt).size() == 20;
    fuzz::require(!fourDigitYear || (again && again->terms == file->terms));
    fuzz::require(widgetTermQuery(file).size() == file->terms.size() + 1);
    return 0;
}
