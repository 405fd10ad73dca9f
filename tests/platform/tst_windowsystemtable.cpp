#include "platform/linux/WindowSystemTable.h"

#include <QTest>

namespace kelvo {

class WindowSystemTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesForTheSession_data();
    void choosesForTheSession();
};

void WindowSystemTableTest::choosesForTheSession_data()
{
    QTest::addColumn<WindowSystemSession>("session");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const WindowSystemSession &session, const char *expected) {
        QTest::newRow(name) << session << QByteArray(expected);
    };
    const WindowSystemSession wayland{.isWayland = true, .hasX11 = true, .hasPlugin = true};
    const auto with = [&wayland](auto change) {
        auto session = wayland;
        change(session);
        return session;
    };
    using Session = WindowSystemSession;

    row("an X11 session is left to Qt", {.hasX11 = true, .hasPlugin = true}, "");
    row("no display is left to Qt", {}, "");
    row("GNOME", wayland, "xcb");
    row("GNOME, scaled", with([](Session &s) { s.isScaled = true; }), "wayland");
    row("Plasma", with([](Session &s) { s.isPlasma = true; }), "xcb");
    row("Plasma, scaled", with([](Session &s) { s.isPlasma = s.isScaled = true; }), "xcb");
    row("Plasma with the layer shell", with([](Session &s) { s.isPlasma = s.hasLayerShell = true; }), "wayland");
    row("sway with the layer shell", with([](Session &s) { s.hasLayerShell = true; }), "wayland");
    row("sway with the layer shell, scaled", with([](Session &s) { s.hasLayerShell = s.isScaled = true; }), "wayland");
    row("without Xwayland", with([](Session &s) { s.hasX11 = false; }), "wayland");
    row("without the plugin", with([](Session &s) { s.hasPlugin = false; }), "xcb");
    row("without the plugin, scaled", with([](Session &s) {
            s.hasPlugin = false;
            s.isScaled = true;
        }),
        "xcb");
    row("without both", with([](Session &s) { s.hasX11 = s.hasPlugin = false; }), "");
}

void WindowSystemTableTest::choosesForTheSession()
{
    QFETCH(WindowSystemSession, session);
    QFETCH(QByteArray, expected);
    QCOMPARE(windowSystemFor(session), expected);
}

} // namespace kelvo

QTEST_APPLESS_MAIN(kelvo::WindowSystemTableTest)
#include "tst_windowsystemtable.moc"
