import QtQuick
import Kelvo

/// The popover with what surrounds it: round corners in a shadow where windows can be translucent, else a plain frame.
Item {
    id: frame

    required property PopoverState popover
    /// Whether windows can be translucent.
    required property bool translucent
    /// How far the window may reach beyond the popover on each side: window managers move one that reaches beyond the
    /// screen or under a panel, and the popover with it. The shadow ends there.
    property real roomAbove: Infinity
    property real roomBelow: Infinity
    property real roomLeft: Infinity
    property real roomRight: Infinity

    /// Where in the frame the popover itself is.
    readonly property rect card: Qt.rect(content.x, content.y, content.width, content.height)
    readonly property real hairline: 1
    readonly property real radius: translucent ? 12 : 0

    height: content.y + content.height + (translucent ? Math.min(shadow.below, roomBelow) : hairline)
    width: content.x + content.width + (translucent ? Math.min(shadow.blur, roomRight) : hairline)

    WindowShadow {
        id: shadow

        /// How far it reaches beyond the popover.
        readonly property real above: blur - drop
        readonly property real below: blur + drop
        readonly property real drop: 10

        anchors.fill: content
        anchors.margins: -blur
        anchors.bottomMargin: -below
        anchors.topMargin: -above
        blur: 34
        color: Tokens.shadow
        visible: frame.translucent
    }
    // The hairline needs a ground where there is nothing behind the window.
    Rectangle {
        anchors.fill: frame
        color: Tokens.popover
        visible: !frame.translucent
    }
    Rectangle {
        anchors.fill: content
        anchors.margins: -frame.hairline
        color: Tokens.hairline
        radius: frame.translucent ? frame.radius + frame.hairline : 0
    }
    Rectangle {
        anchors.fill: content
        color: Tokens.popover
        radius: frame.radius
    }
    StatusPopover {
        id: content

        focus: true
        height: implicitHeight
        objectName: "statusPopover"
        popover: frame.popover
        width: implicitWidth
        x: frame.translucent ? Math.min(shadow.blur, frame.roomLeft) : frame.hairline
        y: frame.translucent ? Math.min(shadow.above, frame.roomAbove) : frame.hairline
    }
}
