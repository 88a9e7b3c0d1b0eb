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

/// The one mapping of the service's errors onto statuses.
std::int32_t statusOf(const GError &error) {
    if (error.domain == G_IO_ERROR && error.code == G_IO_ERROR_CANCELLED)
        return KeychainError::dismissed;
    if (error.domain == SECRET_ERROR && error.code == SECRET_ERROR_IS_LOCKED)
        return KeychainError::locked;
    // Whatever the bus itself says: no bus, no such service, gone in mid-call.
    if (error.domain == G_IO_ERROR || error.domain == G_DBUS_ERROR)
        return KeychainError::unavailable;
    return KeychainError::failed;
}

/// Takes over the error of a call, if there was one, and throws it.
class Errors {
  public:
    ~Errors() { g_clear_error(&error); }
    GError **out() { return &error; }
    void check() const {
        if (error == nullptr)
            return;
        // The service's own "locked" arrives as a remote error by name.
        const std::unique_ptr<char, decltype(&g_free)> remote(
            g_dbus_error_get_remote_error(error), g_free);
        const bool locked =
            remote && std::string(remote.get()) == "org.freedesktop.Secret.Error.IsLocked";
        throw KeychainError(locked ? KeychainError::locked : statusOf(*error), error->message);
    }

  private:
    GError *error = nullptr;
};

/// The attributes that name one secret.
Attributes attributesOf(const std::string &service, const std::string &account) {
    Attributes attributes(
        g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free), g_hash_table_unref);
    g_hash_table_insert(attributes.get(), g_strdup("service"), g_strdup(service.c_str()));
    g_hash_table_insert(attributes.get(), g_strdup("account"), g_strdup(account.c_str()));
    return attributes;
}

Object<::SecretService> connect() {
    Errors errors;
    Object<::SecretService> service(
        secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, nullptr, errors.out()));
    errors.check();
    return service;
}

/// Opens a locked item, with the system's prompt.
void unlock(::SecretService *service, SecretItem *item) {
    GList only{item, nullptr, nullptr};
    Errors errors;
    const int opened = secret_service_unlock_sync(service, &only, nullptr, nullptr, errors.out());
    errors.check();
    if (opened < 1)
        throw KeychainError(KeychainError::dismissed, "The keyring was not unlocked.");
    secret_item_load_secret_sync(item, nullptr, errors.out());
    errors.check();
    if (secret_item_get_locked(item) != FALSE)
        throw KeychainError(KeychainError::locked, "The keyring is locked.");
}

/// Every item of these attributes, opened. The simple look-up answers "nothing" for a locked
/// keyring, which would be taken for signed out.
Items find(::SecretService *service, const Attributes &attributes) {
    Errors errors;
    Items items(secret_service_search_sync(
        service, schema(), attributes.get(),
        SecretSearchFlags(SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS), nullptr, errors.out()));
    errors.check();
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
    Errors errors;
    // An item of the same attributes is replaced.
    const bool stored =
        secret_service_store_sync(
            connection.get(), schema(), attributes.get(), SECRET_COLLECTION_DEFAULT,
            ("Canvas access token for " + account).c_str(), value, nullptr, errors.out()) != FALSE;
    secret_value_unref(value);
    errors.check();
    if (!stored)
        throw KeychainError(KeychainError::dismissed, "The keyring was not unlocked.");
}

void SecretService::remove(const std::string &service, const std::string &account) {
    const auto connection = connect();
    const Items items = find(connection.get(), attributesOf(service, account));
    for (GList *each = items.get(); each != nullptr; each = each->next) {
        Errors errors;
        secret_item_delete_sync(static_cast<SecretItem *>(each->data), nullptr, errors.out());
        errors.check();
    }
}

std::unique_ptr<SecretStore> makeSecretStore() {
    return std::make_unique<SecretService>();
}

} // namespace ellwynd
