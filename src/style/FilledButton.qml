import QtQuick
import Kelvo

/// The button of the main thing to do. As wide as `fixedWidth`, or as its title asks for.
PlainButton {
    id: control

    required property string title
    /// Points; 0 leaves the width to the title.
    property real fixedWidth: 0

    readonly property real sidePadding: fixedWidth > 0 ? 0 : 16

    implicitWidth: fixedWidth > 0 ? fixedWidth : implicitContentWidth + leftPadding + rightPadding
    leftPadding: sidePadding
    rightPadding: sidePadding
    text: title

    background: Rectangle {
        color: control.down ? Tokens.actionPressed : control.hovered ? Tokens.actionHovered : Tokens.action
        opacity: control.enabled ? 1 : 0.45
        radius: Tokens.buttonRadius

        FocusRing {
            innerRadius: Tokens.buttonRadius
            visible: control.visualFocus
        }
    }
    contentItem: Label {
        color: Tokens.actionText
        elide: Text.ElideRight
        font: Tokens.emphasis
        horizontalAlignment: Text.AlignHCenter
        text: control.title
        verticalAlignment: Text.AlignVCenter
    }
}
