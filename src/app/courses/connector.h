// Which data source the preferences name.
#pragma once

#include "canvas/asynctokenstore.h"
#include "canvas/canvasreading.h"
#include "canvas/client/canvassession.h"
#include "preferences/userdefaults.h"

#include <memory>

namespace ellwynd {

/// Opens the source that rosters are read from: the invented college in sample mode, else the saved
/// Canvas address with its token.
class Connector {
  public:
    /// @param now of the invented college.
    Connector(
        UserDefaults &defaults, AsyncTokenStore &tokens, CanvasSession &session,
        Clock now = systemNow);

    /// Null when the program is not connected: no address, or no token for its host.
    /// @throws KeychainError when the token cannot be read, which is no sign-out; Cancelled once a
    /// stop is requested.
    [[nodiscard]] QCoro::Task<std::shared_ptr<CanvasReading>>
    open(UnlockPrompt prompt, std::stop_token stop = {}) const;

  private:
    UserDefaults &defaults;
    AsyncTokenStore &tokens;
    CanvasSession &session;
    Clock now;
};

} // namespace ellwynd
