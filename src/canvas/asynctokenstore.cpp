#include "canvas/asynctokenstore.h"

#include "net/task.h"

#include <QCoro/QCoroFuture>
#include <QPromise>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <exception>

namespace ellwynd {

namespace {

/// How long the destructor waits for an operation that was stopped.
constexpr std::chrono::milliseconds closeLimit{1000};

} // namespace

struct AsyncTokenStore::Result {
    Token token;
    std::exception_ptr error;
};

/// One operation, shared by its task and its thread: whoever ends it first determines the result.
class AsyncTokenStore::Operation {
  public:
    Operation() { promise.start(); }

    /// Called on the thread.
    void run(const Work &work, SecretStore &store, UnlockPrompt prompt) {
        if (ended)
            return;
        inThread = true;
        Result result;
        try {
            const SecretAccess access{.prompt = prompt, .stop = stop.get_token()};
            result.token = work(TokenStore(store), access);
        } catch (...) {
            result.error = std::current_exception();
        }
        inThread = false;
        end(std::move(result));
    }

    [[nodiscard]] QFuture<Result> future() { return promise.future(); }
    /// It was abandoned, but the thread has not come back.
    [[nodiscard]] bool isStuck() const { return ended && inThread; }

    void end(Result result) {
        if (ended.exchange(true))
            return;
        promise.addResult(std::move(result));
        promise.finish();
    }

    /// Ends it with an error, and lets go of what the thread is waiting for.
    template<class Error>
    void abandon(const Error &error) {
        end({.token = {}, .error = std::make_exception_ptr(error)});
        stop.request_stop();
    }

  private:
    QPromise<Result> promise;
    std::stop_source stop;
    std::atomic<bool> ended = false;
    std::atomic<bool> inThread = false;
};

static std::unique_ptr<QThreadPool> oneThread() {
    auto pool = std::make_unique<QThreadPool>();
    pool->setMaxThreadCount(1);
    return pool;
}

AsyncTokenStore::AsyncTokenStore(
    std::shared_ptr<SecretStore> secrets, std::chrono::milliseconds limit)
    : secrets(std::move(secrets)), limit(limit), worker(oneThread()) {}

AsyncTokenStore::~AsyncTokenStore() {
    closing.request_stop();
    stuck.push_back(std::move(worker));
    // A service that does not even answer that a call was cancelled must not delay the exit.
    for (std::unique_ptr<QThreadPool> &each : stuck) {
        if (!each->waitForDone(int(closeLimit.count())))
            static_cast<void>(each.release());
    }
}

/// Gives the next operation another thread when the last one does not come back.
void AsyncTokenStore::replaceStuckWorker() {
    std::erase_if(stuck, [](const auto &each) { return each->activeThreadCount() == 0; });
    const auto last = lastOperation.lock();
    if (last && last->isStuck())
        stuck.push_back(std::exchange(worker, oneThread()));
}

QCoro::Task<std::optional<std::string>>
AsyncTokenStore::run(Work work, UnlockPrompt prompt, std::stop_token stop) {
    replaceStuckWorker();
    const auto operation = std::make_shared<Operation>();
    lastOperation = operation;
    const auto cancel = [operation] { operation->abandon(Cancelled()); };
    const std::stop_callback onStop(stop, cancel);
    const std::stop_callback onClose(closing.get_token(), cancel);
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [operation] {
        operation->abandon(
            KeychainError(KeychainError::timedOut, "The keyring did not answer in time."));
    });
    timer.start(limit);
    worker->start([operation, work = std::move(work), prompt, store = secrets] {
        operation->run(work, *store, prompt);
    });
    QFuture<Result> ending = operation->future();
    co_await qCoro(ending).waitForFinished();
    Result result = ending.result();
    if (result.error)
        std::rethrow_exception(result.error);
    co_return std::move(result.token);
}

QCoro::Task<std::optional<std::string>>
AsyncTokenStore::readToken(std::string account, UnlockPrompt prompt, std::stop_token stop) {
    return run(
        [account = std::move(account)](const TokenStore &tokens, const SecretAccess &access) {
            return tokens.readToken(account, access);
        },
        prompt, std::move(stop));
}

QCoro::Task<> AsyncTokenStore::saveToken(std::string token, std::string account) {
    auto saving = run(
        [token = std::move(token), account = std::move(account)](
            const TokenStore &tokens, const SecretAccess &access) -> Token {
            tokens.saveToken(token, account, access);
            return std::nullopt;
        },
        UnlockPrompt::allowed, {});
    co_await saving;
}

QCoro::Task<> AsyncTokenStore::deleteToken(std::string account) {
    auto deleting = run(
        [account =
             std::move(account)](const TokenStore &tokens, const SecretAccess &access) -> Token {
            tokens.deleteToken(account, access);
            return std::nullopt;
        },
        UnlockPrompt::allowed, {});
    co_await deleting;
}

} // namespace ellwynd
