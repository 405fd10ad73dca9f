#include "platform/Compositing.h"
#include "platform/NativeWindow.h"
#include "platform/Platform.h"
#include "platform/PressWatch.h"
#include "platform/SingleInstance.h"
#include "support/PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QMargins>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace kelvo {

class LinuxPlatformTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isCompleteAndPrintsNothingWithoutABus();
    void usesOneConnectionToEachBus();
    void knowsTheDesktopWithoutItsName_data();
    void knowsTheDesktopWithoutItsName();
    void asksNothingOfAnXServerThatIsNotThere();
    void keepsItsLibrariesOpen();

private:
    QTemporaryDir home_;
};

void LinuxPlatformTest::init()
{
    qputenv("XDG_CONFIG_HOME", home_.path().toUtf8());
    qputenv("XDG_RUNTIME_DIR", home_.path().toUtf8());
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void LinuxPlatformTest::isCompleteAndPrintsNothingWithoutABus()
{
    const PrivateBus absent;
    qputenv("DBUS_SESSION_BUS_ADDRESS", absent.address().toUtf8());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", absent.address().toUtf8());
    QCOMPARE(makeSingleInstance()->acquire(), SingleInstance::Outcome::acquired);
    const auto platform = makePlatform();
    QVERIFY(platform.clock && platform.sleepWake && platform.networkWatch && platform.loginItem
            && platform.preferences);
    QVERIFY(platform.appearance && platform.statusItem);
    QVERIFY(platform.notificationCenter && !platform.notificationCenter->canServeThisProcess());
}

void LinuxPlatformTest::usesOneConnectionToEachBus()
{
    PrivateBus session;
    session.start();
    PrivateBus system;
    system.start();
    qputenv("DBUS_SESSION_BUS_ADDRESS", session.address().toUtf8());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", system.address().toUtf8());
    const auto instance = makeSingleInstance();
    QCOMPARE(instance->acquire(), SingleInstance::Outcome::acquired);
    const auto platform = makePlatform();
    QVERIFY(platform.notificationCenter->canServeThisProcess());

    for (const auto *bus : {&session, &system}) {
        const auto observer = bus->connect();
        const auto names = observer.interface()->registeredServiceNames().value();
        QCOMPARE(names.filter(QRegularExpression(u"^:"_s)).size(), 2); // the observer and the program
    }
}

void LinuxPlatformTest::knowsTheDesktopWithoutItsName_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("isDark");
    QTest::newRow("none") << QByteArray() << QByteArray() << false;
    QTest::newRow("sway") << "SWAYSOCK"_ba << QByteArray() << true;
    QTest::newRow("Hyprland") << "HYPRLAND_INSTANCE_SIGNATURE"_ba << QByteArray() << true;
    QTest::newRow("any name counts") << "SWAYSOCK"_ba << "X-Any"_ba << false;
    QTest::newRow("the first known name counts") << QByteArray() << "ubuntu:GNOME"_ba << true;
}

// Qt's palette is light here, so the panel is dark only if the desktop is known for it.
void LinuxPlatformTest::knowsTheDesktopWithoutItsName()
{
    QFETCH(const QByteArray, variable);
    QFETCH(const QByteArray, name);
    QFETCH(const bool, isDark);
    const PrivateBus absent;
    qputenv("DBUS_SESSION_BUS_ADDRESS", absent.address().toUtf8());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", absent.address().toUtf8());
    qunsetenv("SWAYSOCK");
    qunsetenv("HYPRLAND_INSTANCE_SIGNATURE");
    if (!variable.isEmpty()) {
        qputenv(variable, "/run/user/1000/compositor");
    }
    qputenv("XDG_CURRENT_DESKTOP", name);
    QCOMPARE(makePlatform().appearance->panelIsDark(), isDark);
}

void LinuxPlatformTest::asksNothingOfAnXServerThatIsNotThere()
{
    PressWatch watch;
    watch.start();
    watch.stop();
    QVERIFY(isCompositing());
    QWindow window;
    window.show();
    NativeWindow::makePopover(window);
    NativeWindow::setDrawnShadow(window, QMargins(1, 2, 3, 4));
    NativeWindow::setDrawnShadow(window, QMargins());
    NativeWindow::bringToThisWorkspace(window);
    QVERIFY(window.isVisible());
}

void LinuxPlatformTest::keepsItsLibrariesOpen()
{
    const auto path = openLibrary(u"libOfThisTest"_s);
    QVERIFY(path.startsWith(QCoreApplication::applicationDirPath() + u'/'));
    QVERIFY(path.endsWith(u"/libOfThisTest.so"_s));

    QFile library(path);
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QVERIFY(library.open(QIODevice::WriteOnly));
    library.write("of the first version");
    library.close();
    const auto opened = openLibrary(u"libOfThisTest"_s);
    QVERIFY(library.remove());
    QFile kept(opened);
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), "of the first version"_ba);
    QCOMPARE(::fcntl(opened.section(u'/', -1).toInt(), F_GETFD), FD_CLOEXEC);
    QDir().rmpath(QFileInfo(path).path());
}

} // namespace kelvo

QTEST_MAIN(kelvo::LinuxPlatformTest)
#include "tst_linuxplatform.moc"
