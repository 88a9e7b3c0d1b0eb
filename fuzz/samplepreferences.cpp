// The preferences file of the sample college.
#include "base/files.h"
#include "fuzz/target.h"
#include "fuzz/temporaryfolder.h"
#include "preferences/userdefaults.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace ellwynd;
    static const std::filesystem::path folder = fuzz::temporaryFolder();
    const auto teachers = folder / "Preferences.json";
    constexpr std::string_view saved =
        R"({"SampleData": true, "TextScale": 1.25, "Course.7.Icon": "book"})";
    files::replace(teachers, saved);
    files::replace(folder / "Preferences.sample.json", fuzz::text(data, size));
    PreferenceMap before;
    {
        UserDefaults defaults(teachers, {});
        before = defaults.persistentDomain();
        for (const auto &[key, value] : before)
            fuzz::require(defaults.object(key) == value);
        (void)defaults.value(preferences::textScale);
        (void)defaults.persistentDomainJSON();
        defaults.set("FuzzedFlag", true);
        defaults.remove("Course.7.Icon");
        fuzz::require(!defaults.object("Course.7.Icon"));
    }
    // A change preserves all other values, and the teacher's file.
    fuzz::require(files::read(teachers, 1000) == saved);
    {
        UserDefaults reopened(teachers, {});
        PreferenceMap after = reopened.persistentDomain();
        fuzz::require(after.erase("FuzzedFlag") == 1);
        before.erase("FuzzedFlag");
        before.erase("Course.7.Icon");
        fuzz::require(after == before);
        // The teacher can leave.
        reopened.set(preferences::sampleData, false);
        fuzz::require(!reopened.value(preferences::sampleData));
    }
    for (const auto &entry : std::filesystem::directory_iterator(folder))
        std::filesystem::remove(entry.path());
    return 0;
}
