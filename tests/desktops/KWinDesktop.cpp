#include "KWinDesktop.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QVariantMap>

#include <unistd.h>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

// The protocol org_kde_kwin_fake_input, version 4.
enum Request : std::uint32_t { authenticate, button = 2, motionAbsolute = 9, keyboardKey = 10 };
const wl_interface *noTypes[3] = {};
const wl_message requests[] = {
    {"authenticate", "ss", noTypes},  {"pointer_motion", "ff", noTypes},
    {"button", "uu", noTypes},        {"axis", "uf", noTypes},
    {"touch_down", "2uff", noTypes},  {"touch_motion", "2uff", noTypes},
    {"touch_up", "2u", noTypes},      {"touch_cancel", "2", noTypes},
    {"touch_frame", "2", noTypes},    {"pointer_motion_absolute", "3ff", noTypes},
    {"keyboard_key", "4uu", noTypes},
};
const wl_interface fakeInput{"org_kde_kwin_fake_input", 4, std::size(requests), requests, 0, nullptr};

QByteArray readToEnd(int descriptor)
{
    QFile file;
    return file.open(descriptor, QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

KWinDesktop::KWinDesktop()
    : hand_(compositor_.bind(fakeInput))
{
    request(hand_, authenticate, "Kelvo", "test");
    compositor_.finish();
}

QImage KWinDesktop::picture()
{
    int pipes[2];
    if (pipe(pipes) != 0) {
        return {};
    }
    const auto name = u"org.kde.KWin.ScreenShot2"_s;
    auto question = QDBusMessage::createMethodCall(u"org.kde.KWin"_s, u"/org/kde/KWin/ScreenShot2"_s, name,
                                                   u"CaptureWorkspace"_s);
    question << QVariantMap{{u"native-resolution"_s, true}} << QVariant::fromValue(QDBusUnixFileDescriptor(pipes[1]));
    const auto answer = QDBusConnection::sessionBus().call(question);
    question = {};
    close(pipes[1]);
    const auto pixels = readToEnd(pipes[0]);
    close(pipes[0]);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        qWarning("CaptureWorkspace: %s", qUtf8Printable(answer.errorMessage()));
        return {};
    }
    const auto what = qdbus_cast<QVariantMap>(answer.arguments().constFirst());
    const auto number = [&what](const QString &key) { return what.value(key).toInt(); };
    return QImage(reinterpret_cast<const uchar *>(pixels.constData()), number(u"width"_s), number(u"height"_s),
                  number(u"stride"_s), static_cast<QImage::Format>(number(u"format"_s)))
        .copy();
}

void KWinDesktop::moveTo(const QPoint &point)
{
    request(hand_, motionAbsolute, wl_fixed_from_int(point.x()), wl_fixed_from_int(point.y()));
    compositor_.finish();
}

void KWinDesktop::click(Button which)
{
    for (const std::uint32_t isDown : {1u, 0u}) {
        request(hand_, button, buttonCodes[static_cast<int>(which)], isDown);
    }
    compositor_.finish();
}

void KWinDesktop::pressEscape()
{
    constexpr std::uint32_t escape = 1;
    for (const std::uint32_t isDown : {1u, 0u}) {
        request(hand_, keyboardKey, escape, isDown);
    }
    compositor_.finish();
}

} // namespace kelvo
