// The mark file of a synced folder.
#include "base/files.h"
#include "fuzz/target.h"
#include "fuzz/temporaryfolder.h"
#include "platform/cloud/foldercontents.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    static const std::filesystem::path folder = fuzz::temporaryFolder();
    const auto mark = folder / folderContents::markName;
    const std::string bytes(fuzz::text(data, size));
    files::replace(mark, bytes);
    try {
        const folderContents::Scan scan = folderContents::scan(folder, "another");
        fuzz::require(!scan.contents.mark.empty());
        fuzz::require(folderContents::scan(folder, {}).contents.mark == scan.contents.mark);
        fuzz::require(folderContents::update(folder, scan, {{"TextScale", 1.5}}).empty());
        fuzz::require(folderContents::update(folder, scan, {{"TextScale", std::nullopt}}).empty());
        folderContents::create(folder);
    } catch (const FolderError &error) {
        fuzz::require(
            std::string_view(error.what()).find(folderContents::markName) !=
            std::string_view::npos);
    }
    // A mark is never replaced, valid or not: it may still be being delivered.
    fuzz::require(files::read(mark, size + 1) == bytes);
    return 0;
}
