#include "platform/linux/secretservice.h"

#include <libsecret/secret.h>

#include <memory>

namespace ellwynd {

namespace {

struct Unref {
    void operator()(void *object) const { g_object_unref(object); }
};
template<class T>
using Object = std::unique_ptr<T, Unref>;

struct FreeItems {
    void operator()(GList *list) const { g_list_free_full(list, g_object_unref); }
};
using Items = std::unique_ptr<GList, FreeItems>;

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
    if (error.domain == G_IO_ERROR && error.code == G_IO_ERROR_CANCELLED)
        return KeychainError::dismissed;
    if (error.domain == SECRET_ERROR && error.code == SECRET_ERROR_IS_LOCKED)
        return KeychainError::locked;
    // Errors of the bus: no bus, no such service, or the service ended during the call.
    if (error.domain == G_IO_ERROR || error.domain == G_DBUS_ERROR)
        return KeychainError::unavailable;
    return KeychainError::failed;
}

/// Owns the error of a call, and throws it if there was one.
class CallError {
  public:
    ~CallError() { g_clear_error(&error); }
    GError **out() { return &error; }
    void check() const {
        if (error == nullptr)
            return;
        // The service reports "locked" as a named remote error.
        const std::unique_ptr<char, decltype(&g_free)> remote(
            g_dbus_error_get_remote_error(error), g_free);
        const bool locked =
            remote && std::string(remote.get()) == "org.freedesktop.Secret.Error.IsLocked";
        throw KeychainError(locked ? KeychainError::locked : statusOf(*error), error->message);
    }

  private:
    GError *error = nullptr;
};

/// The attributes that identify one secret.
Attributes attributesOf(const std::string &service, const std::string &account) {
    Attributes attributes(
        g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free), g_hash_table_unref);
    g_hash_table_insert(attributes.get(), g_strdup("service"), g_strdup(service.c_str()));
    g_hash_table_insert(attributes.get(), g_strdup("account"), g_strdup(account.c_str()));
    return attributes;
}

Object<::SecretService> connect() {
    CallError error;
    Object<::SecretService> service(
        secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, nullptr, error.out()));
    error.check();
    return service;
}

/// Unlocks an item through the system's prompt.
void unlock(::SecretService *service, SecretItem *item) {
    GList only{item, nullptr, nullptr};
    CallError error;
    const int opened = secret_service_unlock_sync(service, &only, nullptr, nullptr, error.out());
    error.check();
    if (opened < 1)
        throw KeychainError(KeychainError::dismissed, "The keyring was not unlocked.");
    secret_item_load_secret_sync(item, nullptr, error.out());
    error.check();
    if (secret_item_get_locked(item) != FALSE)
        throw KeychainError(KeychainError::locked, "The keyring is locked.");
}

/// All items with these attributes, unlocked. The simple lookup finds nothing in a locked keyring,
/// which would look like being signed out.
Items find(::SecretService *service, const Attributes &attributes) {
    CallError error;
    Items items(secret_service_search_sync(
        service, schema(), attributes.get(),
        SecretSearchFlags(SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS), nullptr, error.out()));
    error.check();
    for (GList *each = items.get(); each != nullptr; each = each->next) {
        auto *item = static_cast<SecretItem *>(each->data);
        if (secret_item_get_locked(item) != FALSE)
            unlock(service, item);
    }
    return items;
}

} // namespace

std::optional<std::string>
SecretService::read(const std::string &service, const std::string &account) {
    const auto connection = connect();
    const Items items = find(connection.get(), attributesOf(service, account));
    if (!items)
        return std::nullopt;
    SecretValue *value = secret_item_get_secret(static_cast<SecretItem *>(items->data));
    if (value == nullptr)
        return std::nullopt;
    gsize length = 0;
    const char *bytes = secret_value_get(value, &length);
    std::string secret(bytes, length);
    secret_value_unref(value);
    return secret;
}

void SecretService::save(
    const std::string &secret, const std::string &service, const std::string &account) {
    const auto connection = connect();
    const auto attributes = attributesOf(service, account);
    SecretValue *value = secret_value_new(secret.data(), gssize(secret.size()), "text/plain");
    CallError error;
    // Replaces an item with the same attributes.
    const bool stored =
        secret_service_store_sync(
            connection.get(), schema(), attributes.get(), SECRET_COLLECTION_DEFAULT,
            ("Canvas access token for " + account).c_str(), value, nullptr, error.out()) != FALSE;
    secret_value_unref(value);
    error.check();
    if (!stored)
        throw KeychainError(KeychainError::dismissed, "The keyring was not unlocked.");
}

void SecretService::remove(const std::string &service, const std::string &account) {
    const auto connection = connect();
    const Items items = find(connection.get(), attributesOf(service, account));
    for (GList *each = items.get(); each != nullptr; each = each->next) {
        CallError error;
        secret_item_delete_sync(static_cast<SecretItem *>(each->data), nullptr, error.out());
        error.check();
    }
}

std::unique_ptr<SecretStore> makeSecretStore() {
    return std::make_unique<SecretService>();
}

} // namespace ellwynd
