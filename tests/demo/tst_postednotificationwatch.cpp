#include "macos/PostedNotificationWatch.h"
#include "support/FakeNotificationCenter.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

class PostedNotificationWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        auto fake = std::make_unique<FakeNotificationCenter>();
        system_ = fake.get();
        platform_ = {};
        platform_.notificationCenter = std::move(fake);
    }

    void aPostedNotificationIsSeenAndReachesTheSystem()
    {
        const PostedNotificationWatch watch(platform_);
        const QSignalSpy notified(&watch, &NotificationWatch::notified);
        const LocalNotification back{u"1"_s, u"Claude is back"_s, u"You can continue working."_s};
        platform_.notificationCenter->add(back);
        QCOMPARE(watch.seen(), QStringList{u"Claude is back: You can continue working."_s});
        QCOMPARE(notified.size(), 1);
        QCOMPARE(system_->notifications.size(), 1U);
        QVERIFY(system_->notifications.front() == back);
    }

    void theStartAsksForThePermission()
    {
        PostedNotificationWatch watch(platform_);
        QCOMPARE(system_->requests, 0);
        QVERIFY(watch.start());
        QCOMPARE(system_->requests, 1);
    }

    void theStartFailsWithoutABundle()
    {
        system_->serves = false;
        PostedNotificationWatch watch(platform_);
        QVERIFY(!watch.start());
        QVERIFY(!watch.errorString().isEmpty());
        QCOMPARE(system_->requests, 0);
    }

    void theProgramUsesTheSystemAsBefore()
    {
        const PostedNotificationWatch watch(platform_);
        auto &center = *platform_.notificationCenter;
        system_->status = AuthorizationStatus::denied;
        system_->turnedOff = u"System Settings"_s;
        QCOMPARE(center.authorizationStatus().result(), AuthorizationStatus::denied);
        QCOMPARE(center.turnedOffIn().result(), u"System Settings"_s);
        const QSignalSpy activated(&center, &NotificationCenter::activated);
        Q_EMIT system_->activated();
        QCOMPARE(activated.size(), 1);
    }

    void theProgramOutlivesTheWatch()
    {
        {
            const PostedNotificationWatch watch(platform_);
        }
        platform_.notificationCenter->add({u"1"_s, u"Claude is back"_s, u"You can continue working."_s});
        QCOMPARE(system_->notifications.size(), 1U);
    }

private:
    Platform platform_;
    FakeNotificationCenter *system_ = nullptr;
};

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::PostedNotificationWatchTest)
#include "tst_postednotificationwatch.moc"
