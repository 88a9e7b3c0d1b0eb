// Runs in a session with a bus of its own.
#include "platform/appearance/colorscheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QTest>
#include <QThread>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

/// The settings portal, as far as it is asked, in a thread of its own since a question waits.
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

    void tell(const QString &group, const char *key, uint value) {
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

TEST(ColorScheme, IsThePortals) {
    ASSERT_TRUE(QDBusConnection::sessionBus().isConnected());
    EXPECT_EQ(colorScheme::isDark(), std::nullopt) << "no portal";
    std::vector<bool> heard;
    const auto handle = colorScheme::observe([&](bool dark) { heard.push_back(dark); });
    Portal portal;
    EXPECT_EQ(colorScheme::isDark(), std::nullopt) << "no preference";
    portal.answer = 1;
    EXPECT_EQ(colorScheme::isDark(), true);
    portal.answer = 2;
    EXPECT_EQ(colorScheme::isDark(), false);

    const QString appearance = QStringLiteral("org.freedesktop.appearance");
    // The observer was there first, and has to hear that somebody owns the name now.
    EXPECT_TRUE(QTest::qWaitFor([&] {
        portal.tell(appearance, "color-scheme", 1);
        return !heard.empty();
    }));
    portal.tell(appearance, "color-scheme", 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !heard.back(); }));
    heard.clear();
    portal.tell(appearance, "accent-color", 1);
    portal.tell(QStringLiteral("org.gnome.desktop.interface"), "color-scheme", 1);
    portal.tell(appearance, "color-scheme", 1);
    portal.tell(appearance, "color-scheme", 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return heard.size() == 2; }));
    EXPECT_THAT(heard, testing::ElementsAre(true, false));
}

} // namespace
} // namespace ellwynd

#include "colorscheme_test.moc"
