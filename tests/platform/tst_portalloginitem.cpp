#include "platform/linux/PortalLoginItem.h"
#include "settings/SettingsStore.h"
#include "support/FakeBackgroundPortal.h"
#include "support/FakeLoginItem.h"
#include "support/MemoryPreferences.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace kelvo {

/// The switch in the settings over the portal of a fake desktop.
class PortalLoginItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void asksThePortalToStartTheProgram();
    void theSwitchStaysWhenThePortalAgrees();
    void theSwitchSpringsBack_data();
    void theSwitchSpringsBack();
    void theSwitchSpringsBackWithoutAPortal();
    void theSwitchSpringsBackWithoutABus();
    void theSwitchSpringsBackWhenTheBusIsLost();
    void thePortalIsAskedToStopStarting();
    void theSwitchSpringsBackWhenThePortalKeepsStarting();
    void ignoresAnswersToOtherRequests();
    void isNotNeededOutsideOfASandbox();
    void isNeededInASandboxOfFlatpak();

private:
    void make(bool wasEnabled = false);

    std::unique_ptr<PrivateBus> daemon_;
    std::unique_ptr<PortalLoginItem> item_;
    MemoryPreferences preferences_;
    FakeLoginItem *record_ = nullptr;
    std::unique_ptr<SettingsStore> settings_;
};

void PortalLoginItemTest::init()
{
    daemon_ = std::make_unique<PrivateBus>();
    daemon_->start();
}

void PortalLoginItemTest::cleanup()
{
    settings_.reset();
    item_.reset();
    daemon_.reset();
}

void PortalLoginItemTest::make(bool wasEnabled)
{
    auto record = std::make_unique<FakeLoginItem>();
    record_ = record.get();
    record_->enabled = wasEnabled;
    item_ = std::make_unique<PortalLoginItem>(std::make_shared<BusConnection>(daemon_->address()), std::move(record));
    settings_ = std::make_unique<SettingsStore>(preferences_, *item_);
    QCOMPARE(settings_->launchAtLogin(), wasEnabled);
}

void PortalLoginItemTest::asksThePortalToStartTheProgram()
{
    const FakeBackgroundPortal portal(*daemon_);
    make();
    settings_->setLaunchAtLogin(true);
    QTRY_COMPARE(portal.requests().size(), 1);
    const auto options = portal.requests().constFirst();
    QCOMPARE(options.value(u"autostart"_s), QVariant(true));
    QCOMPARE(options.value(u"commandline"_s), QVariant(QStringList{u"kelvo"_s}));
    QVERIFY(!options.value(u"reason"_s).toString().isEmpty());
}

void PortalLoginItemTest::theSwitchStaysWhenThePortalAgrees()
{
    FakeBackgroundPortal portal(*daemon_);
    make();
    settings_->setLaunchAtLogin(true);
    QTRY_COMPARE(portal.requests().size(), 1);
    QSignalSpy changed(item_.get(), &LoginItem::changed);
    portal.answer(0, {{u"background"_s, true}, {u"autostart"_s, true}});
    QTRY_COMPARE(changed.size(), 1);
    QVERIFY(settings_->launchAtLogin());
    QVERIFY(record_->enabled);
    QCOMPARE(portal.requests().size(), 1);
}

void PortalLoginItemTest::theSwitchSpringsBack_data()
{
    QTest::addColumn<uint>("response");
    QTest::addColumn<QVariantMap>("results");
    QTest::newRow("refused by the user") << 1U << QVariantMap();
    QTest::newRow("ended in another way") << 2U << QVariantMap{{u"autostart"_s, true}};
    QTest::newRow("in the background only") << 0U << QVariantMap{{u"background"_s, true}, {u"autostart"_s, false}};
}

void PortalLoginItemTest::theSwitchSpringsBack()
{
    QFETCH(uint, response);
    QFETCH(QVariantMap, results);
    FakeBackgroundPortal portal(*daemon_);
    make();
    settings_->setLaunchAtLogin(true);
    QVERIFY(settings_->launchAtLogin());
    QTRY_COMPARE(portal.requests().size(), 1);
    portal.answer(response, results);
    QTRY_VERIFY(!settings_->launchAtLogin());
    QVERIFY(!record_->enabled);
    QCOMPARE(portal.requests().size(), 1);

    // The next request is independent.
    settings_->setLaunchAtLogin(true);
    QTRY_COMPARE(portal.requests().size(), 2);
}

void PortalLoginItemTest::theSwitchSpringsBackWithoutAPortal()
{
    make();
    settings_->setLaunchAtLogin(true);
    QTRY_VERIFY(!settings_->launchAtLogin());

    FakeBackgroundPortal portal(*daemon_);
    portal.fail();
    settings_->setLaunchAtLogin(true);
    QTRY_COMPARE(portal.requests().size(), 1);
    QTRY_VERIFY(!settings_->launchAtLogin());
}

void PortalLoginItemTest::theSwitchSpringsBackWithoutABus()
{
    daemon_->kill();
    make();
    settings_->setLaunchAtLogin(true);
    QVERIFY(!settings_->launchAtLogin());
}

void PortalLoginItemTest::theSwitchSpringsBackWhenTheBusIsLost()
{
    const FakeBackgroundPortal portal(*daemon_);
    make();
    settings_->setLaunchAtLogin(true);
    QTRY_COMPARE(portal.requests().size(), 1);
    daemon_->kill();
    QTRY_VERIFY(!settings_->launchAtLogin());
}

void PortalLoginItemTest::thePortalIsAskedToStopStarting()
{
    FakeBackgroundPortal portal(*daemon_);
    make(true);
    settings_->setLaunchAtLogin(false);
    QTRY_COMPARE(portal.requests().size(), 1);
    QCOMPARE(portal.requests().constFirst().value(u"autostart"_s), QVariant(false));
    portal.answer(0, {{u"background"_s, true}, {u"autostart"_s, false}});
    QTRY_VERIFY(!record_->enabled);
    QVERIFY(!settings_->launchAtLogin());
}

void PortalLoginItemTest::theSwitchSpringsBackWhenThePortalKeepsStarting()
{
    FakeBackgroundPortal portal(*daemon_);
    portal.fail();
    make(true);
    settings_->setLaunchAtLogin(false);
    QTRY_VERIFY(settings_->launchAtLogin());
    QVERIFY(record_->enabled);
}

void PortalLoginItemTest::ignoresAnswersToOtherRequests()
{
    FakeBackgroundPortal portal(*daemon_);
    make();
    settings_->setLaunchAtLogin(true);
    QTRY_COMPARE(portal.requests().size(), 1);
    portal.answer(0, {{u"autostart"_s, true}});
    QTRY_VERIFY(record_->enabled);
    portal.answer(0, {{u"autostart"_s, false}}); // once more, for the request that has ended
    settings_->setLaunchAtLogin(false);
    QTRY_COMPARE(portal.requests().size(), 2);
    QVERIFY(record_->enabled);
}

void PortalLoginItemTest::isNotNeededOutsideOfASandbox()
{
    qunsetenv("SNAP");
    QVERIFY(!PortalLoginItem::isNeeded());
    qputenv("SNAP", "/snap/terminal/1"); // inherited from a terminal in a snap
    QVERIFY(!PortalLoginItem::isNeeded());
    qputenv("SNAP", QCoreApplication::applicationDirPath().toUtf8());
    QVERIFY(PortalLoginItem::isNeeded());
    qunsetenv("SNAP");
}

void PortalLoginItemTest::isNeededInASandboxOfFlatpak()
{
    const QTemporaryDir root;
    QFile marker(root.filePath(u".flatpak-info"_s));
    QVERIFY(marker.open(QIODevice::WriteOnly));
    const auto path = QFile::encodeName(root.path());
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr int refused = 2;
        if ((::geteuid() != 0 && ::unshare(CLONE_NEWUSER) != 0) || ::chroot(path.constData()) != 0) {
            ::_exit(refused);
        }
        ::_exit(PortalLoginItem::isNeeded() ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    QVERIFY(WIFEXITED(status));
    if (WEXITSTATUS(status) == 2) {
        QSKIP("the system refuses another root directory");
    }
    QCOMPARE(WEXITSTATUS(status), 0);
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::PortalLoginItemTest)
#include "tst_portalloginitem.moc"
