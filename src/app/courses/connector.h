// Which data source the preferences name.
#pragma once

#include "canvas/canvasreading.h"
#include "canvas/client/canvassession.h"
#include "canvas/tokenstore.h"
#include "preferences/userdefaults.h"

#include <memory>

namespace ellwynd {

/// Opens the source that rosters are read from: the invented college in sample mode, else the saved
/// Canvas address with its token.
class Connector {
  public:
    /// @param now of the invented college.
    Connector(
        UserDefaults &defaults, SecretStore &secrets, CanvasSession &session,
        Clock now = systemNow);

    /// Null when the program is not connected: no address, or no token for its host.
    /// @param stop ends the source's reads with Cancelled.
    /// @throws KeychainError when the token cannot be read, which is no sign-out.
    [[nodiscard]] std::shared_ptr<CanvasReading> open(std::stop_token stop = {}) const;

  private:
    UserDefaults &defaults;
    TokenStore tokens;
    CanvasSession &session;
    Clock now;
};

} // namespace ellwynd
