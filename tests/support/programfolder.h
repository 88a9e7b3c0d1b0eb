// The environment of a program that keeps all its files in one folder.
#pragma once

#include "application.h"
#include "support/memorynotifications.h"
#include "support/memorysecrets.h"

namespace ellwynd::test {

inline ApplicationEnvironment
environmentIn(const std::filesystem::path &folder, PreferenceMap launchArguments = {}) {
    return {
        .launchArguments = std::move(launchArguments),
        .preferencesFile = folder / "Preferences.json",
        .data = folder,
        .state = folder,
        .widgetContainer = folder / "widgets",
        .secrets = std::make_shared<MemorySecrets>(),
        .notifications = std::make_unique<MemoryNotifications>()};
}

} // namespace ellwynd::test
