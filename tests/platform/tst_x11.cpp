// The parts of the platform that speak to the X server themselves, on a display without a window manager.

#include "platform/Compositing.h"
#include "platform/NativeWindow.h"
#include "platform/PressWatch.h"
#include "platform/WindowSystem.h"
#include "platform/linux/ActivationToken.h"
#include "platform/linux/Xcb.h"
#include "support/RunOnVirtualDisplay.h"

#include <QGuiApplication>
#include <QMargins>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace kelvo {

class X11Test : public QObject
{
    Q_OBJECT

private:
    struct Request
    {
        QByteArray type;
        QByteArray content; ///< 20 bytes
        bool operator==(const Request &) const = default;
    };

    /// A second client, in place of the window manager and the panel.
    xcb_connection_t *desktop_ = nullptr;

    static std::uint32_t idOf(const QWindow &window) { return static_cast<std::uint32_t>(window.winId()); }

    QByteArray atomName(xcb_atom_t atom) const
    {
        const Xcb::Reply<xcb_get_atom_name_reply_t> reply(
            xcb_get_atom_name_reply(desktop_, xcb_get_atom_name(desktop_, atom), nullptr));
        return {xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get())};
    }

    QList<std::uint32_t> values(const QWindow &window, QByteArrayView property) const
    {
        flush();
        const auto cookie = xcb_get_property(desktop_, false, idOf(window), Xcb::atom(desktop_, property),
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, 16);
        const Xcb::Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(desktop_, cookie, nullptr));
        const auto *first = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
        return {first, first + (reply->format == 32 ? reply->value_len : 0)};
    }

    /// Waits until the server has done everything that the program asked for.
    static void flush()
    {
        auto *connection = Xcb::connection();
        const Xcb::Reply<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }

    /// The messages about the window that the desktop has received.
    QList<Request> requests(const QWindow &window) const
    {
        flush();
        const Xcb::Reply<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(desktop_, xcb_get_input_focus(desktop_), nullptr));
        QList<Request> found;
        for (Xcb::Reply<xcb_generic_event_t> event(xcb_poll_for_event(desktop_)); event;
             event.reset(xcb_poll_for_event(desktop_))) {
            const auto *message = reinterpret_cast<const xcb_client_message_event_t *>(event.get());
            if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE && message->window == idOf(window)) {
                found.append(
                    {atomName(message->type), QByteArray(reinterpret_cast<const char *>(message->data.data8), 20)});
            }
        }
        return found;
    }

    /// A message of 32-bit values, filled with zeros.
    static Request numbers(const QByteArray &type, std::array<std::uint32_t, 5> values)
    {
        return {type, QByteArray(reinterpret_cast<const char *>(values.data()), sizeof values)};
    }

    /// Sets a property of the root window. The format is the number of bits of a value.
    void setRootProperty(QByteArrayView name, std::uint8_t format, QByteArrayView bytes)
    {
        xcb_change_property(desktop_, XCB_PROP_MODE_REPLACE, Xcb::root(desktop_), Xcb::atom(desktop_, name),
                            XCB_ATOM_CARDINAL, format, static_cast<std::uint32_t>(bytes.size() * 8 / format),
                            bytes.data());
        const Xcb::Reply<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(desktop_, xcb_get_input_focus(desktop_), nullptr));
    }

    void setRootProperty(QByteArrayView name, std::uint32_t value)
    {
        setRootProperty(name, 32, QByteArrayView(reinterpret_cast<const char *>(&value), sizeof value));
    }

    static void click(const QString &button)
    {
        QCOMPARE(QProcess::execute(u"xdotool"_s, {u"mousemove"_s, u"700"_s, u"500"_s, u"click"_s, button}), 0);
    }

private Q_SLOTS:
    void init()
    {
        desktop_ = xcb_connect(nullptr, nullptr);
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(desktop_, Xcb::root(desktop_), XCB_CW_EVENT_MASK, &events);
        xcb_flush(desktop_);
        qunsetenv(ActivationToken::variable);
        qunsetenv(ActivationToken::startupIdVariable);
    }

    void cleanup() { xcb_disconnect(desktop_); }

    void theDesktopCompositesWhileACompositorRuns()
    {
        QVERIFY(!isCompositing());
        const auto window = xcb_generate_id(desktop_);
        xcb_create_window(desktop_, XCB_COPY_FROM_PARENT, window, Xcb::root(desktop_), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        const auto selection = Xcb::atom(desktop_, "_NET_WM_CM_S0");
        xcb_set_selection_owner(desktop_, window, selection, XCB_CURRENT_TIME);
        QCOMPARE(Xcb::selectionOwner(desktop_, selection), window);
        QVERIFY(isCompositing());
        xcb_destroy_window(desktop_, window);
        QCOMPARE(Xcb::selectionOwner(desktop_, selection), xcb_window_t{XCB_WINDOW_NONE});
        QVERIFY(!isCompositing());
    }

    void pressesAreReportedWhileTheWatchRuns()
    {
        PressWatch watch;
        QSignalSpy presses(&watch, &PressWatch::pressed);
        watch.stop();
        click(u"1"_s);
        watch.start();
        watch.start();
        flush();
        click(u"1"_s);
        QTRY_COMPARE(presses.size(), 1);
        click(u"3"_s);
        QTRY_COMPARE(presses.size(), 2);
        click(u"8"_s);
        QTRY_COMPARE(presses.size(), 3);
        // Events arrive in order, so the wheel would be seen before the last button.
        for (const auto &wheel : {u"4"_s, u"5"_s, u"6"_s, u"7"_s}) {
            click(wheel);
        }
        click(u"2"_s);
        QTRY_VERIFY(presses.size() >= 4);
        QCOMPARE(presses.size(), 4);

        watch.stop();
        click(u"1"_s);
        watch.start();
        flush();
        click(u"1"_s);
        QTRY_VERIFY(presses.size() >= 5);
        QCOMPARE(presses.size(), 5);
    }

    void aPopoverIsNotInTheTaskBar()
    {
        QWindow window;
        NativeWindow::makePopover(window);
        QCOMPARE(values(window, "_NET_WM_STATE"),
                 (QList<std::uint32_t>{Xcb::atom(desktop_, "_NET_WM_STATE_SKIP_TASKBAR"),
                                       Xcb::atom(desktop_, "_NET_WM_STATE_SKIP_PAGER")}));
    }

    void theDesktopKnowsTheDrawnShadow()
    {
        QWindow window;
        NativeWindow::setDrawnShadow(window, QMargins(1, 2, 3, 4));
        QCOMPARE(values(window, "_GTK_FRAME_EXTENTS"), (QList<std::uint32_t>{1, 3, 2, 4}));
        NativeWindow::setDrawnShadow(window, QMargins());
        QVERIFY(values(window, "_GTK_FRAME_EXTENTS").isEmpty());
    }

    void propertiesOfAnotherFormatAreMissing()
    {
        const auto root = Xcb::root(desktop_);
        QCOMPARE(Xcb::number(desktop_, root, "_KELVO_ABSENT"), std::nullopt);
        QCOMPARE(Xcb::text(desktop_, root, "_KELVO_ABSENT"), QByteArray());
        setRootProperty("_KELVO_TEXT", 8, "long enough");
        QCOMPARE(Xcb::number(desktop_, root, "_KELVO_TEXT"), std::nullopt);
        setRootProperty("_KELVO_NUMBER", 0x12345678);
        for (int reading = 0; reading < 2; ++reading) { // which leaves the property as it is
            QCOMPARE(Xcb::text(desktop_, root, "_KELVO_TEXT"), "long enough"_ba);
            QCOMPARE(Xcb::number(desktop_, root, "_KELVO_NUMBER"), 0x12345678U);
        }
        QCOMPARE(Xcb::text(desktop_, root, "_KELVO_NUMBER"), QByteArray());
        setRootProperty("_KELVO_EMPTY", 32, {});
        QCOMPARE(Xcb::number(desktop_, root, "_KELVO_EMPTY"), std::nullopt);
    }

    // Such a window manager centres the windows that it manages.
    void thePopoverBypassesAWindowManagerOfWlroots()
    {
        using WindowSystem::PopoverKind;
        setRootProperty("_NET_SUPPORTING_WM_CHECK", Xcb::root(desktop_));
        for (const auto &[manager, session, expected] :
             {std::tuple("wlroots wm"_ba, "wayland-0"_ba, PopoverKind::unmanaged),
              std::tuple("GNOME Shell"_ba, "wayland-0"_ba, PopoverKind::managed),
              std::tuple("wlroots wm"_ba, QByteArray(), PopoverKind::managed)}) {
            setRootProperty("_NET_WM_NAME", 8, manager);
            qputenv("WAYLAND_DISPLAY", session);
            QCOMPARE(WindowSystem::popoverKind(), expected);
        }
        qunsetenv("WAYLAND_DISPLAY");
    }

    void aWindowIsMovedToTheCurrentWorkspace()
    {
        QWindow window;
        window.create();
        requests(window);
        NativeWindow::bringToThisWorkspace(window);
        QCOMPARE(requests(window), {});
        setRootProperty("_NET_CURRENT_DESKTOP", 2);
        NativeWindow::bringToThisWorkspace(window);
        QCOMPARE(requests(window), {numbers("_NET_WM_DESKTOP", {2, 1})});
    }

    void aWindowIsActivatedWithTheToken_data()
    {
        QTest::addColumn<QByteArray>("token");
        QTest::addColumn<int>("parts");
        QTest::newRow("usual") << "panel-7-host_TIME4711"_ba << 2;
        QTest::newRow("the end fits") << "a-panel-7-my-host_TIME4711"_ba << 2;
        QTest::newRow("the end needs another part") << "a-panel-7-the-host_TIME4711"_ba << 3;
    }

    void aWindowIsActivatedWithTheToken()
    {
        QFETCH(const QByteArray, token);
        QFETCH(const int, parts);
        QWindow window;
        window.create();
        requests(window);
        ActivationToken::keep(QString::fromLatin1(token));
        NativeWindow::activate(window);
        QVERIFY(qEnvironmentVariableIsEmpty(ActivationToken::variable));
        QCOMPARE(Xcb::text(desktop_, idOf(window), "_NET_STARTUP_ID"), token);
        auto sent = requests(window);
        QVERIFY(sent.contains(numbers("_NET_ACTIVE_WINDOW", {1, 4711})));
        sent.removeIf([](const Request &request) { return !request.type.startsWith("_NET_STARTUP_INFO"); });
        QCOMPARE(sent.size(), parts);
        QByteArray text;
        for (int i = 0; i < parts; ++i) {
            QCOMPARE(sent.at(i).type, i == 0 ? "_NET_STARTUP_INFO_BEGIN"_ba : "_NET_STARTUP_INFO"_ba);
            text += sent.at(i).content;
        }
        QCOMPARE(text, QByteArray("remove: ID=\"" + token + '"').leftJustified(20 * parts, '\0'));
    }

    void anActivatedWindowIsAboveTheOthers()
    {
        QWindow lower;
        QWindow upper;
        lower.show();
        upper.show();
        QVERIFY(QTest::qWaitForWindowExposed(&upper));
        const auto top = [this] {
            flush();
            const Xcb::Reply<xcb_query_tree_reply_t> tree(
                xcb_query_tree_reply(desktop_, xcb_query_tree(desktop_, Xcb::root(desktop_)), nullptr));
            return xcb_query_tree_children(tree.get())[xcb_query_tree_children_length(tree.get()) - 1];
        };
        QCOMPARE(top(), idOf(upper));
        NativeWindow::activate(lower);
        QCOMPARE(top(), idOf(lower));
    }

    void theTimeOfTheTokenIsThatOfTheRequest_data()
    {
        QTest::addColumn<QByteArray>("token");
        QTest::addColumn<uint>("time");
        QTest::newRow("usual") << "panel-7-host_TIME4711"_ba << 4711U;
        QTest::newRow("only a time") << "_TIME7"_ba << 7U;
        QTest::newRow("two times") << "a_TIME1_TIME2"_ba << 2U;
        QTest::newRow("no time") << "odd"_ba << 0U;
        QTest::newRow("no number") << "odd_TIMEx"_ba << 0U;
    }

    void theTimeOfTheTokenIsThatOfTheRequest()
    {
        QFETCH(const QByteArray, token);
        QFETCH(const uint, time);
        QWindow window;
        window.create();
        requests(window);
        qputenv(ActivationToken::startupIdVariable, token);
        NativeWindow::activate(window);
        QVERIFY(requests(window).contains(numbers("_NET_ACTIVE_WINDOW", {1, time})));
        QVERIFY(qEnvironmentVariableIsEmpty(ActivationToken::startupIdVariable));
    }

    void aWindowWithoutATokenTellsNothing()
    {
        QWindow window;
        window.create();
        requests(window);
        NativeWindow::activate(window);
        QCOMPARE(Xcb::text(desktop_, idOf(window), "_NET_STARTUP_ID"), QByteArray());
        const auto sent = requests(window);
        QVERIFY(std::none_of(sent.begin(), sent.end(),
                             [](const Request &request) { return request.type.startsWith("_NET_STARTUP_INFO"); }));
    }
};

} // namespace kelvo

int main(int argc, char **argv)
{
    return kelvo::runOnVirtualDisplay<kelvo::X11Test>(argc, argv);
}
#include "tst_x11.moc"
