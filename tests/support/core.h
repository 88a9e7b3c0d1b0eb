// The program's objects below its windows, in a temporary folder.
#pragma once

#include "app/courses/connector.h"
#include "app/dashboard/scoringpass.h"
#include "app/shell/stores.h"
#include "canvas/connectioncheck.h"
#include "memory/trendsync.h"
#include "support/memorynotifications.h"
#include "support/memorysecrets.h"
#include "support/temporaryfolder.h"

namespace ellwynd::test {

struct Core {
    TemporaryFolder folder;
    UserDefaults defaults;
    MemorySecrets secrets;
    AsyncTokenStore tokens{secrets.shared()};
    CanvasSession session;
    Connector connector;
    ConnectionCheck check{defaults, tokens, session};
    Stores stores;
    TrendSync trends{defaults};
    MemoryNotifications notifications;
    MovementNotifier notices{defaults, notifications, [] { return false; }};
    /// How often the widgets were told to reload.
    int widgetReloads = 0;
    WidgetSnapshotWriter widgets{folder.path() / "widgets", [this] { ++widgetReloads; }};
    PassSinks sinks{.widgets = widgets, .notices = &notices};

    explicit Core(PreferenceMap arguments = {}, Clock clock = systemNow)
        : defaults(folder.path() / "Preferences.json", std::move(arguments)),
          connector(defaults, tokens, session, clock),
          stores(defaults, folder.path() / "data", clock) {}

    /// Saves an address with a token for it.
    void connectTo(const std::string &address, const std::string &token = "secret-token") {
        secrets.secrets[{TokenStore::service, TokenStore::accountOf(address)}] = token;
        defaults.set(preferences::canvasBaseURL, address);
    }
};

} // namespace ellwynd::test
