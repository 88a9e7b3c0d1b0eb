// Runs with its own session bus.
#include "platform/appearance/colorscheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QTest>
#include <QThread>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

/// A fake settings portal. It has its own thread, since `isDark` blocks.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

  public:
    Portal() {
        moveToThread(&thread);
        thread.start();
        bus.registerObject(
            QStringLiteral("/org/freedesktop/portal/desktop"), this,
            QDBusConnection::ExportScriptableSlots);
        EXPECT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
    }
    ~Portal() override {
        bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
        thread.quit();
        thread.wait();
    }

    void sendSettingChanged(const QString &group, const char *key, uint value) {
        bus.send(
            QDBusMessage::createSignal(
                QStringLiteral("/org/freedesktop/portal/desktop"),
                QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"))
            << group << QString::fromUtf8(key) << QVariant::fromValue(QDBusVariant(value)));
    }

    std::atomic<uint> answer = 0;

  public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString &group, const QString &key) {
        const bool known = group == QStringLiteral("org.freedesktop.appearance") &&
            key == QStringLiteral("color-scheme");
        return QDBusVariant(
            QVariant::fromValue(QDBusVariant(known ? QVariant(answer.load()) : QVariant(7))));
    }

  private:
    QThread thread;
    QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"));
};

TEST(ColorScheme, FollowsThePortal) {
    ASSERT_TRUE(QDBusConnection::sessionBus().isConnected());
    EXPECT_EQ(colorScheme::isDark(), std::nullopt) << "no portal";
    std::vector<std::optional<bool>> changes;
    const auto handle =
        colorScheme::observe([&](std::optional<bool> dark) { changes.push_back(dark); });
    Portal portal;
    EXPECT_EQ(colorScheme::isDark(), std::nullopt) << "no preference";
    portal.answer = 1;
    EXPECT_EQ(colorScheme::isDark(), true);
    portal.answer = 2;
    EXPECT_EQ(colorScheme::isDark(), false);

    const QString appearance = QStringLiteral("org.freedesktop.appearance");
    // The observer was connected first, and must learn that the name has an owner now.
    EXPECT_TRUE(QTest::qWaitFor([&] {
        portal.sendSettingChanged(appearance, "color-scheme", 1);
        return !changes.empty();
    }));
    portal.sendSettingChanged(appearance, "color-scheme", 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return changes.back() == false; }));
    changes.clear();
    portal.sendSettingChanged(appearance, "accent-color", 1);
    portal.sendSettingChanged(QStringLiteral("org.gnome.desktop.interface"), "color-scheme", 1);
    portal.sendSettingChanged(appearance, "color-scheme", 1);
    portal.sendSettingChanged(appearance, "color-scheme", 2);
    portal.sendSettingChanged(appearance, "color-scheme", 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return changes.size() == 3; }));
    EXPECT_THAT(changes, testing::ElementsAre(true, false, std::nullopt))
        << "no preference means the same as at the start";
}

} // namespace
} // namespace ellwynd

#include "colorscheme_test.moc"
