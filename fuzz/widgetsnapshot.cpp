// The widget snapshot file, and the contents of a widget.
#include "fuzz/target.h"
#include "outputs/snapshot/widgettexts.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    const auto file = decodeWidgetSnapshotFile(fuzz::text(data, size));
    constexpr std::size_t maxRows = 3;
    const WidgetContent content = widgetContent(file, 10, maxRows, Date{});
    fuzz::require(content.rows.size() <= maxRows && content.flagged >= 0);
    fuzz::require(content.message.empty() == (file && shownTerm(*file, 10) != nullptr));
    if (!file)
        return 0;
    // A snapshot round-trips.
    const auto reread = decodeWidgetSnapshotFile(encode(*file));
    const bool fourDigitYear = formatInstant(file->updatedAt).size() == 20;
    fuzz::require(!fourDigitYear || (reread && reread->terms == file->terms));
    fuzz::require(widgetTermQuery(file).size() == file->terms.size() + 1);
    return 0;
}
