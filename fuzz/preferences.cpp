// The preferences file.
#include "base/files.h"
#include "fuzz/target.h"
#include "fuzz/temporaryfolder.h"
#include "preferences/userdefaults.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    static const std::filesystem::path folder = fuzz::temporaryFolder();
    const auto file = folder / "Preferences.json";
    files::replace(file, fuzz::text(data, size));
    PreferenceMap before;
    {
        UserDefaults defaults(file, {});
        before = defaults.persistentDomain();
        (void)defaults.value(preferences::textScale);
        (void)defaults.value(preferences::sidebarTermLimit);
        (void)defaults.value(preferences::sidebarExpandedTerms);
        defaults.set("FuzzedFlag", true);
    }
    // A change preserves all other values.
    const UserDefaults reopened(file, {});
    PreferenceMap after = reopened.persistentDomain();
    fuzz::require(after.erase("FuzzedFlag") == 1);
    before.erase("FuzzedFlag");
    fuzz::require(after == before);
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path() != file)
            std::filesystem::remove(entry.path());
    }
    return 0;
}
