// A Secret Service on the session bus that fails as told.
#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QStringList>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace ellwynd::test {

/// Answers for org.freedesktop.secrets on a connection of its own, from the event loop of the
/// thread that created it. Throws std::runtime_error when the name cannot be owned.
class ScriptedKeyring : public QDBusVirtualObject {
    Q_OBJECT

  public:
    struct Item {
        std::string account;
        QByteArray secret;
        bool locked = false;
        quint64 modified = 1;
        bool deleted = false;
    };

    ScriptedKeyring();
    ~ScriptedKeyring() override;

    std::vector<Item> items;
    /// Methods answered with a D-Bus error, as "Method" → its name.
    std::map<QString, QString> errors;
    /// Methods that are never answered.
    std::set<QString> hung;
    /// A prompt that is shown is answered, dismissed, or left alone.
    enum class Prompt { confirmed, dismissed, ignored } prompt = Prompt::confirmed;
    /// Each item's secret is left out of the answer.
    bool answersEmpty = false;
    /// The methods that were called.
    QStringList calls;
    int prompts = 0;

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &from) override;

  private:
    QDBusMessage answer(const QDBusMessage &message);
    QVariantMap properties(const QString &interface, const QString &path) const;
    void completePrompt(bool dismissed);

    QDBusConnection bus;
    /// The items to unlock when the prompt is confirmed.
    QList<QDBusObjectPath> promptedItems;
};

} // namespace ellwynd::test
