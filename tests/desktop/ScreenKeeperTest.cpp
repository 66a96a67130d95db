// The screen is kept awake by whichever service there is, and given back.

#include "desktop/ScreenKeeper.h"

#include "desktop/FakeScreenSaver.h"
#include "desktop/SessionBus.h"
#include "support/Soon.h"

#include <gtest/gtest.h>

#include <QDBusObjectPath>
#include <QTest>

namespace {

class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Inhibit")

public slots:
    Q_SCRIPTABLE QDBusObjectPath Inhibit(const QString &, uint what, const QVariantMap &options)
    {
        said += QStringLiteral("Inhibit %1 %2").arg(what).arg(options.value("reason").toString());
        return QDBusObjectPath("/org/freedesktop/portal/desktop/request/7");
    }

public:
    QStringList said;
};

class FakeRequest : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Request")

public slots:
    Q_SCRIPTABLE void Close() { ++closed; }

public:
    int closed = 0;
};

struct ScreenKeeping : public ::testing::Test
{
    test::SessionBus bus;
    QDBusConnection desktop = bus.connection("desktop");
    QDBusConnection player = bus.connection("player");
    int wakes = 0;
    ScreenKeeper keeper{player, [this] { ++wakes; }};
};

} // namespace

TEST_F(ScreenKeeping, AsksTheScreenSaverOnceAndGivesBackAtTheEndAtTheLatest)
{
    test::FakeScreenSaver service(desktop);
    keeper.keepAwake(true);
    keeper.keepAwake(true);
    QTest::qWait(50);
    keeper.keepAwake(false);
    EXPECT_SOON(service.said.size() == 2);
    EXPECT_EQ(service.said, QStringList({"Inhibit Orbilens Player", "UnInhibit 41"}));

    // A pause before the answer has come gives back all the same.
    keeper.keepAwake(true);
    keeper.keepAwake(false);
    EXPECT_SOON(service.said.size() == 4);
    EXPECT_EQ(service.said.last(), "UnInhibit 41");
    EXPECT_EQ(wakes, 0);
    {
        ScreenKeeper shortLived(player, [] {});
        shortLived.keepAwake(true);
        EXPECT_SOON(service.said.size() == 5);
        QTest::qWait(50);
    }
    EXPECT_SOON(service.said.size() == 6);
}

TEST_F(ScreenKeeping, TakesThePortalWhereThereIsNoScreenSaver)
{
    FakePortal portal;
    FakeRequest request;
    desktop.registerObject("/org/freedesktop/portal/desktop", &portal,
                           QDBusConnection::ExportScriptableSlots);
    desktop.registerObject("/org/freedesktop/portal/desktop/request/7", &request,
                           QDBusConnection::ExportScriptableSlots);
    ASSERT_TRUE(desktop.registerService("org.freedesktop.portal.Desktop"));
    keeper.keepAwake(true);
    EXPECT_SOON(portal.said.size() == 1);
    EXPECT_EQ(portal.said, QStringList("Inhibit 8 Playing a film"));
    QTest::qWait(50);
    keeper.keepAwake(false);
    EXPECT_SOON(request.closed == 1);
    EXPECT_EQ(wakes, 0);
}

TEST_F(ScreenKeeping, WakesTheScreenItselfWhereThereIsNoService)
{
    keeper.keepAwake(true);
    EXPECT_SOON(wakes == 1) << "a bus without services";

    int wakesAlone = 0;
    ScreenKeeper alone(QDBusConnection("no such connection"), [&] { ++wakesAlone; });
    alone.keepAwake(true);
    EXPECT_EQ(wakesAlone, 1) << "no bus";
}

#include "ScreenKeeperTest.moc"
