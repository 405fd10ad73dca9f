import QtQuick
import Kelvo

/// The popover with its frame: round corners and a shadow if the window is translucent, a plain line otherwise.
///
/// The shadow is cut off where the window has no room, because window managers move a window that extends beyond the
/// screen or under a panel.
PopoverFrameItem {
    id: frame

    required property PopoverState popover

    card: content
    height: content.y + content.height + (translucent ? Math.min(shadow.below, roomBelow) : Tokens.hairlineWidth)
    width: content.x + content.width + (translucent ? Math.min(shadow.blur, roomRight) : Tokens.hairlineWidth)

    WindowShadow {
        id: shadow

        /// The extent of the shadow outside of the popover.
        readonly property real above: blur - drop
        readonly property real below: blur + drop
        readonly property real drop: Tokens.windowShadowDrop

        anchors.fill: content
        anchors.margins: -blur
        anchors.bottomMargin: -below
        anchors.topMargin: -above
        blur: Tokens.windowShadowBlur
        color: Tokens.shadow
        visible: frame.translucent
    }
    // The translucent hairline needs a background if the window is opaque.
    RoundedRectangle {
        anchors.fill: frame
        color: Tokens.popover
        visible: !frame.translucent
    }
    RoundedRectangle {
        anchors.fill: content
        anchors.margins: -border.width
        border.color: Tokens.hairline
        border.width: Tokens.hairlineWidth
        color: Tokens.popover
        radius: frame.translucent ? Tokens.windowRadius + border.width : 0
    }
    StatusPopover {
        id: content

        focus: true
        height: implicitHeight
        objectName: "statusPopover"
        popover: frame.popover
        width: implicitWidth
        x: frame.translucent ? Math.min(shadow.blur, frame.roomLeft) : Tokens.hairlineWidth
        y: frame.translucent ? Math.min(shadow.above, frame.roomAbove) : Tokens.hairlineWidth
    }
}
