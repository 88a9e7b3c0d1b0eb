#include "platform/cloud/cloudkeyvaluestore.h"

namespace ellwynd {

std::optional<PreferenceValue> CloudKeyValueStore::object(std::string_view key) const {
    const CloudContents *now = contents();
    if (now == nullptr)
        return std::nullopt;
    const auto found = now->values.find(key);
    return found != now->values.end() ? std::optional(found->second) : std::nullopt;
}

PreferenceMap CloudKeyValueStore::all() const {
    const CloudContents *now = contents();
    return now != nullptr ? now->values : PreferenceMap();
}

} // namespace ellwynd
