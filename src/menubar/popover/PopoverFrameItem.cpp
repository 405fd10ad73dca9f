#include "menubar/popover/PopoverFrameItem.h"

namespace kelvo {

void PopoverFrameItem::setTranslucent(bool translucent)
{
    if (translucent == translucent_) {
        return;
    }
    translucent_ = translucent;
    Q_EMIT translucentChanged();
}

void PopoverFrameItem::setRoom(const QMargins &room)
{
    if (room == room_) {
        return;
    }
    room_ = room;
    Q_EMIT roomChanged();
}

} // namespace kelvo
