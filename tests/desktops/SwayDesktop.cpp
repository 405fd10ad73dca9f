#include "SwayDesktop.h"

#include "Command.h"

#include <QDateTime>
#include <QTemporaryFile>

namespace kelvo {

using namespace Qt::StringLiterals;

namespace {

// The protocol zwlr_virtual_pointer, version 1.
enum PointerRequest : std::uint32_t { motionAbsolute = 1, button, frame = 4 };
const wl_interface *noTypes[5] = {};
const wl_message pointerRequests[] = {
    {"motion", "uff", noTypes}, {"motion_absolute", "uuuuu", noTypes},
    {"button", "uuu", noTypes}, {"axis", "uuf", noTypes},
    {"frame", "", noTypes},
};
const wl_interface pointerInterface{"zwlr_virtual_pointer_v1", 1, std::size(pointerRequests),
                                    pointerRequests,           0, nullptr};
const wl_interface *createTypes[] = {nullptr, &pointerInterface};
const wl_message managerRequests[] = {{"create_virtual_pointer", "?on", createTypes}};
const wl_interface managerInterface{
    "zwlr_virtual_pointer_manager_v1", 1, std::size(managerRequests), managerRequests, 0, nullptr};

// The protocol zwp_virtual_keyboard, version 1.
enum KeyboardRequest : std::uint32_t { keymap, key };
const wl_message keyboardRequests[] = {{"keymap", "uhu", noTypes}, {"key", "uuu", noTypes}};
const wl_interface keyboardInterface{"zwp_virtual_keyboard_v1", 1, std::size(keyboardRequests),
                                     keyboardRequests,          0, nullptr};
const wl_interface *keyboardTypes[] = {&wl_seat_interface, &keyboardInterface};
const wl_message keyboardManagerRequests[] = {{"create_virtual_keyboard", "on", keyboardTypes}};
const wl_interface keyboardManagerInterface{"zwp_virtual_keyboard_manager_v1", 1, std::size(keyboardManagerRequests),
                                            keyboardManagerRequests,           0, nullptr};

/// A keyboard with one key.
constexpr char escapeKeymap[] = R"(xkb_keymap {
xkb_keycodes { minimum = 8; maximum = 255; <ESC> = 9; };
xkb_types { include "complete" };
xkb_compat { include "complete" };
xkb_symbols { key <ESC> { [ Escape ] }; };
};)";

std::uint32_t now()
{
    return static_cast<std::uint32_t>(QDateTime::currentMSecsSinceEpoch());
}

} // namespace

SwayDesktop::SwayDesktop()
    : pointer_(wl_proxy_marshal_flags(compositor_.bind(managerInterface), 0, &pointerInterface, 1, 0, nullptr, nullptr))
    , keyboard_(wl_proxy_marshal_flags(compositor_.bind(keyboardManagerInterface), 0, &keyboardInterface, 1, 0,
                                       compositor_.bind(wl_seat_interface), nullptr))
{
    QTemporaryFile file;
    if (!file.open() || file.write(escapeKeymap, sizeof escapeKeymap) < 0 || !file.flush()) {
        qFatal("The keymap cannot be written");
    }
    constexpr std::uint32_t xkbFormat = 1;
    request(keyboard_, keymap, xkbFormat, file.handle(), static_cast<std::uint32_t>(sizeof escapeKeymap));
    compositor_.finish();
}

QImage SwayDesktop::picture()
{
    return QImage::fromData(outputOf(u"grim"_s, {u"-"_s}));
}

void SwayDesktop::moveTo(const QPoint &point)
{
    const auto size = screenSize();
    request(pointer_, motionAbsolute, now(), static_cast<std::uint32_t>(point.x()),
            static_cast<std::uint32_t>(point.y()), static_cast<std::uint32_t>(size.width()),
            static_cast<std::uint32_t>(size.height()));
    request(pointer_, frame);
    compositor_.finish();
}

void SwayDesktop::click(Button which)
{
    for (const std::uint32_t isDown : {1u, 0u}) {
        request(pointer_, button, now(), buttonCodes[static_cast<int>(which)], isDown);
        request(pointer_, frame);
    }
    compositor_.finish();
}

void SwayDesktop::pressEscape()
{
    constexpr std::uint32_t escape = 1;
    for (const std::uint32_t isDown : {1u, 0u}) {
        request(keyboard_, key, now(), escape, isDown);
    }
    compositor_.finish();
}

} // namespace kelvo
