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
        color: control.down ? Qt.darker(Tokens.action, 1.15) : control.hovered ? Qt.lighter(Tokens.action, 1.08) : Tokens.action
        opacity: control.enabled ? 1 : 0.45
        radius: 7

        FocusRing {
            innerRadius: 7
            visible: control.visualFocus
        }
    }
    contentItem: Label {
        color: "white"
        elide: Text.ElideRight
        font: Tokens.systemFont(13, Font.DemiBold)
        horizontalAlignment: Text.AlignHCenter
        text: control.title
        verticalAlignment: Text.AlignVCenter
    }
}
