// The decision which of two machines' settings win.
#pragma once

#include "platform/cloud/cloudkeyvaluestore.h"

#include <optional>

namespace ellwynd {

/// What a merge decided.
struct SettingsMerge {
    /// To be saved on this machine.
    PreferenceChanges toApply;
    /// To be written to the store.
    PreferenceChanges toPush;
    /// What both sides hold once `toApply` is saved: the base of the next merge.
    PreferenceMap agreed;

    bool operator==(const SettingsMerge &) const = default;
};

/// Merges this machine's synced settings with those of the store. A setting that was changed here
/// since the two last agreed is pushed, whatever the store holds; any other difference is applied.
/// What cannot be read in the store is no news. A blank address is never applied over an address.
///
/// @param local the saved settings of this machine, only synced ones.
/// @param agreed what both sides held at the last merge. Absent when they meet for the first time:
///        the store's settings are then applied, and those that it lacks are pushed.
/// @param stored the store's contents; keys that are not synced are ignored.
/// @param changedHere synced keys known to be changed here since the sync was switched on. They
///        matter at a first meeting.
[[nodiscard]] SettingsMerge mergeSettings(
    const PreferenceMap &local, const std::optional<PreferenceMap> &agreed,
    const CloudContents &stored, const std::set<std::string, std::less<>> &changedHere);

} // namespace ellwynd
