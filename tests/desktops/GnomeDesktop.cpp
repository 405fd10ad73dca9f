#include "GnomeDesktop.h"

#include "WaylandConnection.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QVariantMap>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

const auto remoteDesktop = u"org.gnome.Mutter.RemoteDesktop"_s;
const auto sessionInterface = u"org.gnome.Mutter.RemoteDesktop.Session"_s;

QDBusMessage call(const QString &service, const QString &path, const QString &interface, const QString &method,
                  const QVariantList &arguments = {})
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    auto answer = QDBusConnection::sessionBus().call(message);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        qWarning("%s: %s", qUtf8Printable(method), qUtf8Printable(answer.errorMessage()));
    }
    return answer;
}

} // namespace

GnomeDesktop::GnomeDesktop()
{
    const auto made = call(remoteDesktop, u"/org/gnome/Mutter/RemoteDesktop"_s, remoteDesktop, u"CreateSession"_s);
    session_ = made.arguments().value(0).value<QDBusObjectPath>().path();
    tell(u"Start"_s, {});
    // The first key makes the keyboard. Programs have no time to notice it before the key is pressed.
    pressEscape();
    // GNOME starts with the overview of the windows.
    call(u"org.gnome.Shell"_s, u"/org/gnome/Shell"_s, u"org.gnome.Shell"_s, u"Eval"_s,
         {u"Main.overview.hide(); Main.messageTray._expireNotification?.()"_s});
}

QImage GnomeDesktop::picture()
{
    const auto file = pictures_.filePath(u"picture.png"_s);
    call(u"org.gnome.Shell"_s, u"/org/gnome/Shell/Screenshot"_s, u"org.gnome.Shell.Screenshot"_s, u"Screenshot"_s,
         {false, false, file});
    return QImage(file);
}

void GnomeDesktop::moveTo(const QPoint &point)
{
    // Without a stream of the screen there is only relative motion, which stops at the edges of the screen. The top left
    // corner of GNOME is a button.
    const auto corner = QPoint(screenSize().width() - 1, screenSize().height() - 1);
    const auto way = point - corner;
    tell(u"NotifyPointerMotionRelative"_s, {20'000.0, 20'000.0});
    tell(u"NotifyPointerMotionRelative"_s, {double(way.x()), double(way.y())});
}

void GnomeDesktop::click(Button button)
{
    for (const bool isDown : {true, false}) {
        tell(u"NotifyPointerButton"_s, {static_cast<int>(buttonCodes[static_cast<int>(button)]), isDown});
    }
}

void GnomeDesktop::pressEscape()
{
    constexpr uint escape = 0xff1b;
    for (const bool isDown : {true, false}) {
        tell(u"NotifyKeyboardKeysym"_s, {escape, isDown});
    }
}

void GnomeDesktop::tell(const QString &method, const QVariantList &arguments)
{
    call(remoteDesktop, session_, sessionInterface, method, arguments);
}

} // namespace kelvo
