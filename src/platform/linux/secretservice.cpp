#include "platform/linux/secretservice.h"

#include <libsecret/secret.h>

#include <algorithm>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

namespace ellwynd {

namespace {

struct Unref {
    void operator()(void *object) const { g_object_unref(object); }
};
template<class T>
using Object = std::unique_ptr<T, Unref>;

using Attributes = std::unique_ptr<GHashTable, decltype(&g_hash_table_unref)>;

const SecretSchema *schema() {
    static const SecretSchema value{
        "com.varnok.Ellwynd.token",
        SECRET_SCHEMA_NONE,
        {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
         {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
         {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
        0,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr,
        nullptr};
    return &value;
}

/// Maps the service's errors to statuses.
std::int32_t statusOf(const GError &error) {
    // The service reports "locked" as a named remote error.
    const std::unique_ptr<char, decltype(&g_free)> remote(
        g_dbus_error_get_remote_error(&error), g_free);
    if (remote && std::string(remote.get()) == "org.freedesktop.Secret.Error.IsLocked")
        return KeychainError::locked;
    if (error.domain == SECRET_ERROR && error.code == SECRET_ERROR_IS_LOCKED)
        return KeychainError::locked;
    if (error.domain == G_IO_ERROR && error.code == G_IO_ERROR_TIMED_OUT)
        return KeychainError::timedOut;
    // Errors of the bus: no bus, no such service, or the service ended during the call.
    if (error.domain == G_IO_ERROR || error.domain == G_DBUS_ERROR)
        return KeychainError::unavailable;
    return KeychainError::failed;
}

/// The calls of one operation, with its own main context: the proxies of a worker thread must not
/// have their signals delivered to the main thread.
class Calls {
  public:
    explicit Calls(const SecretAccess &access)
        : access(access), cancellable(g_cancellable_new()), context(g_main_context_new()) {
        g_main_context_push_thread_default(context.get());
    }
    ~Calls() {
        // Proxies that were released are cleaned up by the context.
        while (g_main_context_iteration(context.get(), FALSE) != FALSE) {
        }
        g_main_context_pop_thread_default(context.get());
    }
    Calls(const Calls &) = delete;
    Calls &operator=(const Calls &) = delete;

    /// Calls `function` with a cancellable and an error. @throws KeychainError
    template<class Function>
    auto operator()(const Function &function) const {
        GError *error = nullptr;
        auto result = function(cancellable.get(), &error);
        if (error == nullptr)
            return result;
        const std::unique_ptr<GError, decltype(&g_error_free)> owned(error, g_error_free);
        if (access.stop.stop_requested())
            throw KeychainError(KeychainError::timedOut, "The keyring did not answer in time.");
        const bool cancelled = owned->domain == G_IO_ERROR && owned->code == G_IO_ERROR_CANCELLED;
        throw KeychainError(
            cancelled ? std::int32_t(KeychainError::dismissed) : statusOf(*owned), owned->message);
    }

    [[nodiscard]] bool mayPrompt() const { return access.prompt == UnlockPrompt::allowed; }

  private:
    struct UnrefContext {
        void operator()(GMainContext *each) const { g_main_context_unref(each); }
    };

    const SecretAccess &access;
    Object<GCancellable> cancellable;
    std::unique_ptr<GMainContext, UnrefContext> context;
    std::stop_callback<std::function<void()>> onStop{
        access.stop, [this] { g_cancellable_cancel(cancellable.get()); }};
};

/// The attributes that identify one secret.
Attributes attributesOf(const std::string &service, const std::string &account) {
    Attributes attributes(
        g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free), g_hash_table_unref);
    g_hash_table_insert(attributes.get(), g_strdup("service"), g_strdup(service.c_str()));
    g_hash_table_insert(attributes.get(), g_strdup("account"), g_strdup(account.c_str()));
    return attributes;
}

/// Opens a session of its own. The library's shared one outlives a service that was started anew,
/// since nobody runs the main context that would report it.
Object<::SecretService> connect(const Calls &call) {
    return Object<::SecretService>(call([](GCancellable *stop, GError **error) {
        return secret_service_open_sync(
            SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_OPEN_SESSION, stop, error);
    }));
}

/// All items with these attributes in every keyring, the last modified first. The simple lookup
/// finds nothing in a locked keyring, which would look like being signed out, and a search that
/// loads the secrets hides why one cannot be loaded. The schema is left out, since a keyring that
/// was never unlocked since it was loaded finds nothing by its name.
std::vector<Object<SecretItem>>
find(const Calls &call, ::SecretService *service, const Attributes &attributes) {
    GList *found = call([&](GCancellable *stop, GError **error) {
        return secret_service_search_sync(
            service, nullptr, attributes.get(), SECRET_SEARCH_ALL, stop, error);
    });
    std::vector<Object<SecretItem>> items;
    for (const GList *each = found; each != nullptr; each = each->next)
        items.emplace_back(static_cast<SecretItem *>(each->data));
    g_list_free(found);
    std::ranges::stable_sort(items, std::ranges::greater{}, [](const Object<SecretItem> &item) {
        return secret_item_get_modified(item.get());
    });
    return items;
}

bool isLocked(const Object<SecretItem> &item) {
    return secret_item_get_locked(item.get()) != FALSE;
}

/// Unlocks an item through the system's prompt.
void unlock(const Calls &call, ::SecretService *service, SecretItem *item) {
    if (!call.mayPrompt())
        throw KeychainError(KeychainError::locked, "The keyring is locked.");
    GList only{item, nullptr, nullptr};
    const int opened = call([&](GCancellable *stop, GError **error) {
        return secret_service_unlock_sync(service, &only, stop, nullptr, error);
    });
    if (opened < 1)
        throw KeychainError(KeychainError::dismissed, "The keyring was not unlocked.");
}

std::string load(const Calls &call, SecretItem *item) {
    call([item](GCancellable *stop, GError **error) {
        return secret_item_load_secret_sync(item, stop, error);
    });
    SecretValue *value = secret_item_get_secret(item);
    if (value == nullptr)
        throw KeychainError(KeychainError::failed, "The secret could not be loaded.");
    gsize length = 0;
    const char *bytes = secret_value_get(value, &length);
    std::string secret(bytes, length);
    secret_value_unref(value);
    if (secret.empty())
        throw KeychainError(KeychainError::failed, "The secret is empty.");
    return secret;
}

void removeAll(const Calls &call, ::SecretService *service, const Attributes &attributes) {
    std::exception_ptr failure;
    for (const Object<SecretItem> &item : find(call, service, attributes)) {
        try {
            if (isLocked(item))
                unlock(call, service, item.get());
            call([&item](GCancellable *stop, GError **error) {
                return secret_item_delete_sync(item.get(), stop, error);
            });
        } catch (const KeychainError &) {
            if (!failure)
                failure = std::current_exception();
        }
    }
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace

std::optional<std::string> SecretService::read(
    const std::string &service, const std::string &account, const SecretAccess &access) {
    const Calls call(access);
    const auto connection = connect(call);
    auto items = find(call, connection.get(), attributesOf(service, account));
    if (items.empty())
        return std::nullopt;
    // Locked items last, since an open keyring may hold the secret.
    std::stable_partition(
        items.begin(), items.end(), [](const auto &item) { return !isLocked(item); });
    std::exception_ptr failure;
    for (const Object<SecretItem> &item : items) {
        try {
            if (isLocked(item))
                unlock(call, connection.get(), item.get());
            return load(call, item.get());
        } catch (const KeychainError &) {
            if (!failure)
                failure = std::current_exception();
        }
    }
    std::rethrow_exception(failure);
}

void SecretService::save(
    const std::string &secret, const std::string &service, const std::string &account,
    const SecretAccess &access) {
    const Calls call(access);
    const auto connection = connect(call);
    const auto attributes = attributesOf(service, account);
    try {
        removeAll(call, connection.get(), attributes);
    } catch (const KeychainError &) {
        // What cannot be deleted is older than the new item, so it is not read while that exists.
        if (access.stop.stop_requested())
            throw;
    }
    const std::unique_ptr<SecretValue, decltype(&secret_value_unref)> value(
        secret_value_new(secret.data(), gssize(secret.size()), "text/plain"), secret_value_unref);
    const bool stored = call([&](GCancellable *stop, GError **error) {
        return secret_service_store_sync(
                   connection.get(), schema(), attributes.get(), SECRET_COLLECTION_DEFAULT,
                   ("Canvas access token for " + account).c_str(), value.get(), stop,
                   error) != FALSE;
    });
    if (!stored)
        throw KeychainError(KeychainError::dismissed, "The keyring was not unlocked.");
}

void SecretService::remove(
    const std::string &service, const std::string &account, const SecretAccess &access) {
    const Calls call(access);
    const auto connection = connect(call);
    removeAll(call, connection.get(), attributesOf(service, account));
}

std::unique_ptr<SecretStore> makeSecretStore() {
    return std::make_unique<SecretService>();
}

} // namespace ellwynd
