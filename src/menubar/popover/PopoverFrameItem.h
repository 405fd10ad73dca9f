#pragma once

#include <QMargins>
#include <QPointer>
#include <QQuickItem>

#include <limits>

namespace kelvo {

/// The interface between the window of the popover and the QML that draws its frame. The window sets whether it is
/// translucent and how much room there is; the QML sets where the popover is.
class PopoverFrameItem : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    /// Whether the window is translucent.
    Q_PROPERTY(bool translucent READ isTranslucent WRITE setTranslucent NOTIFY translucentChanged FINAL)
    /// How far the window may extend beyond the popover on each side, in points.
    Q_PROPERTY(int roomAbove READ roomAbove NOTIFY roomChanged FINAL)
    Q_PROPERTY(int roomBelow READ roomBelow NOTIFY roomChanged FINAL)
    Q_PROPERTY(int roomLeft READ roomLeft NOTIFY roomChanged FINAL)
    Q_PROPERTY(int roomRight READ roomRight NOTIFY roomChanged FINAL)
    /// The popover itself, which the frame contains. An item rather than its rectangle: the window changes the room when
    /// the popover grows, and the popover's place in the frame depends on the room.
    Q_PROPERTY(QQuickItem *card MEMBER card_ NOTIFY cardChanged FINAL)

public:
    using QQuickItem::QQuickItem;

    bool isTranslucent() const { return translucent_; }
    int roomAbove() const { return room_.top(); }
    int roomBelow() const { return room_.bottom(); }
    int roomLeft() const { return room_.left(); }
    int roomRight() const { return room_.right(); }
    QQuickItem *card() const { return card_; }

    void setTranslucent(bool translucent);
    /// The room is unlimited until this is called.
    void setRoom(const QMargins &room);

Q_SIGNALS:
    void translucentChanged();
    void roomChanged();
    void cardChanged();

private:
    static constexpr int unlimited = std::numeric_limits<int>::max();

    bool translucent_ = false;
    QMargins room_{unlimited, unlimited, unlimited, unlimited};
    QPointer<QQuickItem> card_;
};

} // namespace kelvo
