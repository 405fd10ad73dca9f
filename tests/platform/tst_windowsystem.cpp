#include "platform/WindowSystem.h"
#include "support/FakeCompositor.h"

#include <QFile>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace kelvo {

using Screens = std::vector<FakeCompositor::Screen>;
#ifdef KELVO_LAYER_SHELL
constexpr auto withTheLayerShell = "wayland";
#else
constexpr auto withTheLayerShell = "xcb";
#endif
/// The scale of the only screen of a compositor; nullopt when no compositor answers.
using Scale = std::optional<int>;

class WindowSystemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void choosesForTheWaylandSession_data();
    void choosesForTheWaylandSession();
    void leavesOtherSessionsToQt();
    void leavesTheChoiceToTheUser();
    void doesNotKnowWhereThePointerIsOnWayland();
    void leavesRoomForAPanelOnWayland();
    void placesThePopoverItselfWhereNeitherX11NorWaylandIs();

private:
    static QByteArray choice() { return qgetenv("QT_QPA_PLATFORM"); }

    QTemporaryDir runtimeDirectory_;
};

void WindowSystemTest::init()
{
    qputenv("XDG_RUNTIME_DIR", runtimeDirectory_.path().toUtf8());
    for (const auto *variable : {"WAYLAND_DISPLAY", "DISPLAY", "XDG_CURRENT_DESKTOP", "QT_QPA_PLATFORM"}) {
        qunsetenv(variable);
    }
}

void WindowSystemTest::choosesForTheWaylandSession_data()
{
    QTest::addColumn<Scale>("scale");
    QTest::addColumn<bool>("hasLayerShell");
    QTest::addColumn<QByteArray>("display");
    QTest::addColumn<QByteArray>("desktops");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("GNOME") << Scale(1) << false << ":0"_ba << "GNOME"_ba << "xcb"_ba;
    QTest::newRow("GNOME, scaled") << Scale(2) << false << ":0"_ba << "GNOME"_ba << "wayland"_ba;
    QTest::newRow("Plasma, scaled") << Scale(2) << false << ":0"_ba << "X-Any:KDE"_ba << "xcb"_ba;
    QTest::newRow("without Xwayland") << Scale(1) << false << ""_ba << "GNOME"_ba << "wayland"_ba;
    QTest::newRow("the layer shell") << Scale(1) << true << ":0"_ba << "sway"_ba << QByteArray(withTheLayerShell);
    QTest::newRow("no compositor") << Scale() << false << ":0"_ba << "GNOME"_ba << "xcb"_ba;
}

void WindowSystemTest::choosesForTheWaylandSession()
{
    QFETCH(const Scale, scale);
    QFETCH(const bool, hasLayerShell);
    QFETCH(const QByteArray, display);
    QFETCH(const QByteArray, desktops);
    QFETCH(const QByteArray, expected);
    if (expected == "wayland"
        && !QFile::exists(QLibraryInfo::path(QLibraryInfo::PluginsPath) + u"/platforms/libqwayland-generic.so"_s)) {
        QSKIP("Qt's plugin for Wayland is not installed");
    }
    std::unique_ptr<FakeCompositor> compositor;
    if (scale) {
        compositor = std::make_unique<FakeCompositor>(Screens{{.scale = *scale}}, hasLayerShell);
    } else {
        qputenv("WAYLAND_DISPLAY", "wayland-0");
    }
    qputenv("DISPLAY", display);
    qputenv("XDG_CURRENT_DESKTOP", desktops);
    {
        const WindowSystem::Choice choice;
        QCOMPARE(this->choice(), expected);
    }
    QVERIFY(!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"));
}

void WindowSystemTest::leavesOtherSessionsToQt()
{
    qputenv("DISPLAY", ":0");
    qputenv("WAYLAND_DISPLAY", "");
    const WindowSystem::Choice choice;
    QVERIFY(!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"));
}

void WindowSystemTest::leavesTheChoiceToTheUser()
{
    const FakeCompositor compositor(Screens{{.scale = 1}});
    qputenv("DISPLAY", ":0");
    qputenv("QT_QPA_PLATFORM", "minimal");
    {
        const WindowSystem::Choice choice;
        QCOMPARE(this->choice(), "minimal"_ba);
    }
    QCOMPARE(choice(), "minimal"_ba);
}

void WindowSystemTest::doesNotKnowWhereThePointerIsOnWayland()
{
    QVERIFY(WindowSystem::pointer().has_value());
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    QVERIFY(!WindowSystem::pointer().has_value());
}

void WindowSystemTest::leavesRoomForAPanelOnWayland()
{
    const auto &screen = *QGuiApplication::primaryScreen();
    const auto all = screen.geometry();
    QCOMPARE(screen.availableGeometry(), all);
    QCOMPARE(WindowSystem::availableGeometry(screen), all);
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    QCOMPARE(WindowSystem::availableGeometry(screen), all.adjusted(0, 40, 0, 0));
    QCOMPARE(WindowSystem::geometryWithoutBars(screen), all.adjusted(0, 40, 0, 0));
}

void WindowSystemTest::placesThePopoverItselfWhereNeitherX11NorWaylandIs()
{
    QCOMPARE(WindowSystem::popoverKind(), WindowSystem::PopoverKind::managed);
}

} // namespace kelvo

QTEST_MAIN(kelvo::WindowSystemTest)
#include "tst_windowsystem.moc"
