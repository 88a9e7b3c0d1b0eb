// The token store for code that must not block.
#pragma once

#include "canvas/tokenstore.h"

#include <QCoro/QCoroTask>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

class QThreadPool;

namespace ellwynd {

/// The operations of TokenStore on a thread of their own, one after the other, since a secret store
/// may hang or wait for the teacher to answer a prompt. Lives on the main thread; the tasks may
/// outlive it and then throw Cancelled.
class AsyncTokenStore {
  public:
    static constexpr std::chrono::seconds defaultLimit{30};

    /// @param limit after which an operation throws KeychainError::timedOut.
    explicit AsyncTokenStore(
        std::shared_ptr<SecretStore> secrets, std::chrono::milliseconds limit = defaultLimit);
    ~AsyncTokenStore();
    AsyncTokenStore(const AsyncTokenStore &) = delete;
    AsyncTokenStore &operator=(const AsyncTokenStore &) = delete;

    /// Absent when no token is saved. @throws KeychainError, and Cancelled once a stop is requested
    [[nodiscard]] QCoro::Task<std::optional<std::string>>
    readToken(std::string account, UnlockPrompt prompt, std::stop_token stop = {});
    /// @throws KeychainError, and then the earlier token may be deleted
    [[nodiscard]] QCoro::Task<> saveToken(std::string token, std::string account);
    /// @throws KeychainError
    [[nodiscard]] QCoro::Task<> deleteToken(std::string account);

  private:
    using Token = std::optional<std::string>;
    using Work = std::function<Token(const TokenStore &, const SecretAccess &)>;

    struct Result;
    class Operation;

    QCoro::Task<Token> run(Work work, UnlockPrompt prompt, std::stop_token stop);
    void replaceStuckWorker();

    std::shared_ptr<SecretStore> secrets;
    std::chrono::milliseconds limit;
    std::unique_ptr<QThreadPool> worker;
    std::weak_ptr<Operation> lastOperation;
    /// Threads that did not come back from an operation that was abandoned.
    std::vector<std::unique_ptr<QThreadPool>> stuck;
    /// Stops all operations when this object is destroyed.
    std::stop_source closing;
};

} // namespace ellwynd
