// Opens the data source that the preferences select.
#pragma once

#include "canvas/asynctokenstore.h"
#include "canvas/canvasreading.h"
#include "canvas/client/canvassession.h"
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
        UserDefaults &defaults, AsyncTokenStore &tokens, CanvasSession &session,
        Clock now = systemNow);
    virtual ~Connector() = default;
    Connector(const Connector &) = delete;
    Connector &operator=(const Connector &) = delete;

    /// Null if the program is not connected, that is without an address or a token for its host.
    /// @throws KeychainError if the token cannot be read, which is not the same as signed out;
    /// Cancelled once a stop is requested.
    [[nodiscard]] virtual QCoro::Task<std::shared_ptr<CanvasReading>>
    open(UnlockPrompt prompt, std::stop_token stop = {}) const;

  private:
    UserDefaults &defaults;
    AsyncTokenStore &tokens;
    CanvasSession &session;
    Clock now;
};

} // namespace ellwynd
