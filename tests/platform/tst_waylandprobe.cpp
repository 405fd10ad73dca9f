#include "platform/linux/WaylandProbe.h"
#include "support/FakeCompositor.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

namespace kelvo {

using Screens = std::vector<FakeCompositor::Screen>;

class WaylandProbeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void knowsTheScreensAndTheLayerShell_data();
    void knowsTheScreensAndTheLayerShell();
    void knowsNothingWithoutACompositor();
    void leavesTheCompositorAfterTheAnswer();

private:
    QTemporaryDir runtimeDirectory_;
};

void WaylandProbeTest::init()
{
    qputenv("XDG_RUNTIME_DIR", runtimeDirectory_.path().toUtf8());
    qunsetenv("WAYLAND_DISPLAY");
}

void WaylandProbeTest::knowsTheScreensAndTheLayerShell_data()
{
    QTest::addColumn<Screens>("screens");
    QTest::addColumn<bool>("hasLayerShell");
    QTest::addColumn<bool>("isScaled");
    QTest::newRow("no screen") << Screens{} << false << false;
    QTest::newRow("a usual screen") << Screens{{.scale = 1}} << false << false;
    QTest::newRow("a usual screen and the layer shell") << Screens{{.scale = 1}} << true << false;
    QTest::newRow("a fine screen") << Screens{{.scale = 2}} << false << true;
    QTest::newRow("a fine screen before a usual one") << Screens{{.scale = 2}, {.scale = 1}} << true << true;
    QTest::newRow("a fine screen after a usual one") << Screens{{.scale = 1}, {.scale = 2}} << true << true;
    QTest::newRow("the first version with scales") << Screens{{.scale = 2, .version = 2}} << false << true;
    QTest::newRow("the version without scales") << Screens{{.scale = 2, .version = 1}} << true << false;
    QTest::newRow("the version without scales and another")
        << Screens{{.scale = 2, .version = 1}, {.scale = 2}} << true << true;
}

void WaylandProbeTest::knowsTheScreensAndTheLayerShell()
{
    QFETCH(const Screens, screens);
    QFETCH(const bool, hasLayerShell);
    QFETCH(const bool, isScaled);
    const FakeCompositor compositor(screens, hasLayerShell);
    const auto probe = WaylandProbe::ask();
    QCOMPARE(probe.hasLayerShell, hasLayerShell);
    QCOMPARE(probe.isScaled, isScaled);
}

void WaylandProbeTest::knowsNothingWithoutACompositor()
{
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    const auto probe = WaylandProbe::ask();
    QVERIFY(!probe.hasLayerShell);
    QVERIFY(!probe.isScaled);
}

void WaylandProbeTest::leavesTheCompositorAfterTheAnswer()
{
    const auto openDescriptors = [] {
        return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size();
    };
    const FakeCompositor compositor(Screens{{.scale = 2}}, true);
    const auto before = openDescriptors();
    QVERIFY(WaylandProbe::ask().isScaled);
    QTRY_COMPARE(openDescriptors(), before); // those of the probe at once, and that of the compositor a moment later
}

} // namespace kelvo

QTEST_APPLESS_MAIN(kelvo::WaylandProbeTest)
#include "tst_waylandprobe.moc"
