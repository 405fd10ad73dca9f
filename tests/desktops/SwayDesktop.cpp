#include "SwayDesktop.h"

#include "Command.h"

#include <QDateTime>

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

std::uint32_t now()
{
    return static_cast<std::uint32_t>(QDateTime::currentMSecsSinceEpoch());
}

} // namespace

SwayDesktop::SwayDesktop()
    : pointer_(wl_proxy_marshal_flags(compositor_.bind(managerInterface), 0, &pointerInterface, 1, 0, nullptr, nullptr))
{
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
    outputOf(u"wtype"_s, {u"-k"_s, u"Escape"_s});
}

} // namespace kelvo
