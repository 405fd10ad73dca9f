#include "platform/linux/RtnetlinkNetworkWatch.h"
#include "support/NoDescriptors.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDir>
#include <QNetworkInterface>
#include <QProcess>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include <sched.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace kelvo {

namespace {

/// The exit code that CTest reports as "skipped".
constexpr int skipped = 77;

/// Moves this process into a new, empty network namespace in which it may set up interfaces and routes.
bool enterOwnNetwork()
{
    if (::geteuid() == 0 && ::unshare(CLONE_NEWNET) == 0) {
        return true;
    }
    const auto user = std::to_string(::geteuid());
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
        return false;
    }
    std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
    return true;
}

/// Whether the kernel reports the interface as running. This can be delayed.
bool runs(const QString &interface)
{
    return QNetworkInterface::interfaceFromName(interface).flags().testFlag(QNetworkInterface::IsRunning);
}

bool replaceFile(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    return file.open(QFile::WriteOnly) && file.write(content) == content.size() && file.commit();
}

qsizetype openDescriptors()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size();
}

} // namespace

class RtnetlinkNetworkWatchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aNetworkThatComesUpIsReported();
    void aDefaultRouteOfIPv6IsReported();
    void anotherAddressIsReported();
    void theReturnOfALostNetworkIsReportedButNotItsLoss();
    void anotherRouterIsReported();
    void aVirtualPrivateNetworkIsReported_data();
    void aVirtualPrivateNetworkIsReported();
    void aCableThatIsPluggedInAgainIsReported();
    void anInterfaceWithoutADefaultRouteIsNotReported();
    void theInitialNetworkIsNotReported();
    void aNameServerThatIsKnownLaterIsReported();
    void nameServersWithoutANetworkAreNotReported();
    void leavesNoDescriptorBehind();
    void leavesNoDescriptorBehindWithoutAStandardInput();
    void aWatchWithoutASocketReportsNothing();
    void aNetworkThatCouldNotBeReadIsReportedLater();

private:
    /// Runs `ip` with these arguments and processes the pending events.
    static bool ip(const QString &arguments);
    /// Adds a pair of connected interfaces, NAME0 and NAME1. NAME1 is up, so NAME0 runs as soon as it is up.
    static bool addInterface(const QString &name);
    static bool bringUp();
};

bool RtnetlinkNetworkWatchTest::ip(const QString &arguments)
{
    const int result = QProcess::execute(u"ip"_s, arguments.split(u' '));
    QCoreApplication::processEvents();
    return result == 0;
}

bool RtnetlinkNetworkWatchTest::addInterface(const QString &name)
{
    return ip(u"link add "_s + name + u"0 type veth peer name "_s + name + u'1')
        && ip(u"link set "_s + name + u"1 up"_s);
}

bool RtnetlinkNetworkWatchTest::bringUp()
{
    return ip(u"address add 192.0.2.2/24 dev lan0"_s) && ip(u"link set lan0 up"_s)
        && ip(u"route add default via 192.0.2.1"_s) && QTest::qWaitFor([] { return runs(u"lan0"_s); });
}

void RtnetlinkNetworkWatchTest::init()
{
    QVERIFY(addInterface(u"lan"_s));
}

void RtnetlinkNetworkWatchTest::cleanup()
{
    QVERIFY(ip(u"link delete lan0"_s));
}

void RtnetlinkNetworkWatchTest::aNetworkThatComesUpIsReported()
{
    RtnetlinkNetworkWatch watch;
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    QVERIFY(ip(u"address add 192.0.2.2/24 dev lan0"_s));
    QVERIFY(ip(u"link set lan0 up"_s));
    QCOMPARE(changed.count(), 0);
    QVERIFY(ip(u"route add default via 192.0.2.1"_s));
    QTRY_COMPARE(changed.count(), 1);
}

void RtnetlinkNetworkWatchTest::aDefaultRouteOfIPv6IsReported()
{
    RtnetlinkNetworkWatch watch;
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    QVERIFY(ip(u"link set lan0 up"_s));
    QVERIFY(ip(u"-6 route add default via fe80::1 dev lan0"_s));
    // A link-local address is not a way out.
    QCOMPARE(changed.count(), 0);
    QVERIFY(ip(u"address add 2001:db8::2/64 dev lan0 nodad"_s));
    QTRY_COMPARE(changed.count(), 1);
}

void RtnetlinkNetworkWatchTest::anotherAddressIsReported()
{
    QVERIFY(bringUp());
    RtnetlinkNetworkWatch watch;
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    QVERIFY(ip(u"address add 192.0.2.3/24 dev lan0"_s));
    QTRY_COMPARE(changed.count(), 1);
    QVERIFY(ip(u"address delete 192.0.2.3/24 dev lan0"_s));
    QTRY_COMPARE(changed.count(), 1);
}

void RtnetlinkNetworkWatchTest::theReturnOfALostNetworkIsReportedButNotItsLoss()
{
    QVERIFY(bringUp());
    RtnetlinkNetworkWatch watch;
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    QVERIFY(ip(u"link set lan0 down"_s));
    QCOMPARE(changed.count(), 0);
    QVERIFY(ip(u"link set lan0 up"_s));
    QVERIFY(ip(u"route add default via 192.0.2.1"_s));
    QTRY_COMPARE(changed.count(), 1);
}

void RtnetlinkNetworkWatchTest::anotherRouterIsReported()
{
    QVERIFY(bringUp());
    RtnetlinkNetworkWatch watch;
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    QVERIFY(ip(u"route replace default via 192.0.2.254"_s));
    QTRY_COMPARE(changed.count(), 1);
}

void RtnetlinkNetworkWatchTest::aVirtualPrivateNetworkIsReported_data()
{
    QTest::addColumn<QString>("route");
    QTest::newRow("two halves of the addresses") << u"route add 0.0.0.0/1 dev vpn0"_s;
    QTest::newRow("in a table of its own") << u"route add default dev vpn0 table 51820"_s;
    QTest::newRow("preferred by its metric") << u"route add default dev vpn0 metric 5"_s;
}

void RtnetlinkNetworkWatchTest::aVirtualPrivateNetworkIsReported()
{
    QFETCH(QString, route);
    QVERIFY(bringUp());
    RtnetlinkNetworkWatch watch;
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    QVERIFY(addInterface(u"vpn"_s));
    QVERIFY(ip(u"address add 198.51.100.2/32 dev vpn0"_s));
    QVERIFY(ip(u"link set vpn0 up"_s));
    QCOMPARE(changed.count(), 0);
    QVERIFY(ip(route));
    QTRY_COMPARE(changed.count(), 1);
    QVERIFY(ip(u"link delete vpn0"_s));
    QTRY_COMPARE(changed.count(), 1);
}

void RtnetlinkNetworkWatchTest::aCableThatIsPluggedInAgainIsReported()
{
    QVERIFY(bringUp());
    RtnetlinkNetworkWatch watch;
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    QVERIFY(ip(u"link set lan1 down"_s));
    QTRY_VERIFY(!runs(u"lan0"_s));
    QCOMPARE(changed.count(), 0);
    QVERIFY(ip(u"link set lan1 up"_s));
    QTRY_COMPARE(changed.count(), 1);
    // Nothing is left to read, or it would be read again for ever.
    bool isBusy = true;
    for (int i = 0; i < 1000 && isBusy; ++i) {
        isBusy = QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents);
    }
    QVERIFY(!isBusy);
}

void RtnetlinkNetworkWatchTest::anInterfaceWithoutADefaultRouteIsNotReported()
{
    QVERIFY(bringUp());
    RtnetlinkNetworkWatch watch;
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    QVERIFY(addInterface(u"other"_s));
    QVERIFY(ip(u"address add 198.51.100.2/24 dev other0"_s));
    QVERIFY(ip(u"link set other0 up"_s));
    QVERIFY(ip(u"route add 203.0.113.0/24 via 198.51.100.1"_s));
    QVERIFY(ip(u"link delete other0"_s));
    QCOMPARE(changed.count(), 0);
}

void RtnetlinkNetworkWatchTest::theInitialNetworkIsNotReported()
{
    QVERIFY(bringUp());
    RtnetlinkNetworkWatch watch;
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    QCoreApplication::processEvents();
    QVERIFY(ip(u"address change 192.0.2.2/24 dev lan0 valid_lft 1000 preferred_lft 1000"_s));
    QCOMPARE(changed.count(), 0);
}

void RtnetlinkNetworkWatchTest::aNameServerThatIsKnownLaterIsReported()
{
    QVERIFY(bringUp());
    QTemporaryDir etc;
    const auto resolver = etc.filePath(u"resolv.conf"_s);
    RtnetlinkNetworkWatch watch(resolver);
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    QVERIFY(replaceFile(resolver, "# none yet\nsearch example.org\n"));
    QVERIFY(replaceFile(resolver, "search example.org\nnameserver 192.0.2.53\n"));
    QTRY_COMPARE(changed.count(), 1);
    QVERIFY(replaceFile(resolver, "nameserver 192.0.2.53\noptions edns0\n")); // the same server
    QVERIFY(replaceFile(resolver, ""));                                       // lost
    QTest::qWait(0);
    QVERIFY(replaceFile(resolver, "nameserver 2001:db8::53\nnameserver 192.0.2.54\n"));
    QTRY_COMPARE(changed.count(), 2);
    std::ofstream(QFile::encodeName(resolver).toStdString()) << "nameserver 192.0.2.55\n"; // written in place
    QTRY_COMPARE(changed.count(), 3);
}

void RtnetlinkNetworkWatchTest::nameServersWithoutANetworkAreNotReported()
{
    QTemporaryDir etc;
    const auto resolver = etc.filePath(u"resolv.conf"_s);
    RtnetlinkNetworkWatch watch(resolver);
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    QVERIFY(replaceFile(resolver, "nameserver 192.0.2.53\n"));
    QVERIFY(bringUp()); // reported, and shows that the events of the file were processed
    QTRY_VERIFY(changed.count() > 0);
    QCOMPARE(changed.count(), 1);
}

void RtnetlinkNetworkWatchTest::leavesNoDescriptorBehind()
{
    const auto before = openDescriptors();
    {
        const RtnetlinkNetworkWatch watch;
        QVERIFY(ip(u"link set lan0 up"_s));
        QCOMPARE(openDescriptors(), before + 2);
    }
    QCOMPARE(openDescriptors(), before);
}

void RtnetlinkNetworkWatchTest::leavesNoDescriptorBehindWithoutAStandardInput()
{
    const int input = ::dup(STDIN_FILENO);
    ::close(STDIN_FILENO);
    const auto before = openDescriptors();
    std::make_unique<RtnetlinkNetworkWatch>().reset();
    const auto after = openDescriptors();
    ::dup2(input, STDIN_FILENO);
    ::close(input);
    QCOMPARE(after, before);
}

void RtnetlinkNetworkWatchTest::aWatchWithoutASocketReportsNothing()
{
    QTest::failOnWarning(QRegularExpression(u"QSocketNotifier"_s));
    const auto before = openDescriptors();
    {
        auto none = std::make_unique<NoDescriptors>();
        RtnetlinkNetworkWatch watch;
        none.reset();
        QCOMPARE(openDescriptors(), before);
        const QSignalSpy changed(&watch, &NetworkWatch::changed);
        QVERIFY(bringUp());
        QCOMPARE(changed.count(), 0);
    }
    QCOMPARE(openDescriptors(), before);
}

void RtnetlinkNetworkWatchTest::aNetworkThatCouldNotBeReadIsReportedLater()
{
    QVERIFY(ip(u"address add 192.0.2.2/24 dev lan0"_s) && ip(u"link set lan0 up"_s));
    QTRY_VERIFY(runs(u"lan0"_s));
    RtnetlinkNetworkWatch watch;
    const QSignalSpy changed(&watch, &NetworkWatch::changed);
    // Events are not processed while the process waits for the command.
    QCOMPARE(QProcess::execute(u"ip"_s, {u"route"_s, u"add"_s, u"default"_s, u"via"_s, u"192.0.2.1"_s}), 0);
    {
        const NoDescriptors none;
        QCoreApplication::processEvents();
    }
    QCOMPARE(changed.count(), 0);
    QVERIFY(ip(u"address add 192.0.2.3/24 dev lan0"_s));
    QTRY_COMPARE(changed.count(), 1);
}

} // namespace kelvo

int main(int argc, char *argv[])
{
    if (!kelvo::enterOwnNetwork()) {
        std::puts("SKIPPED: tst_rtnetlinknetworkwatch needs a network namespace, which the system refuses");
        return kelvo::skipped;
    }
    const QCoreApplication application(argc, argv);
    kelvo::RtnetlinkNetworkWatchTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_rtnetlinknetworkwatch.moc"
