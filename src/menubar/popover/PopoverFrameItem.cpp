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

void PopoverFrameItem::setCard(QQuickItem *card)
{
    if (card == card_) {
        return;
    }
    card_ = card;
    Q_EMIT cardChanged();
}

} // namespace kelvo
