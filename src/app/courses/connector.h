// Opens the data source that the preferences select.
#pragma once

#include "canvas/canvasreading.h"
#include "canvas/client/canvassession.h"
#include "canvas/tokenstore.h"
#include "preferences/userdefaults.h"

#include <memory>

namespace ellwynd {

/// Opens the source that courses are read from: the sample college in sample mode, otherwise Canvas
/// at the saved address with its token.
class Connector {
  public:
    /// The references must outlive this object and the sources that it opens.
    /// @param now the clock of the sample college.
    Connector(
        UserDefaults &defaults, SecretStore &secrets, CanvasSession &session,
        Clock now = systemNow);

    /// Null if the program is not connected, that is without an address or a token for its host.
    /// May block on the keyring's unlock prompt.
    /// @param stop ends the source's reads with Cancelled.
    /// @throws KeychainError if the token cannot be read, which is not the same as signed out.
    [[nodiscard]] std::shared_ptr<CanvasReading> open(std::stop_token stop = {}) const;

  private:
    UserDefaults &defaults;
    TokenStore tokens;
    CanvasSession &session;
    Clock now;
};

} // namespace ellwynd
