import QtQuick
import Kelvo

/// The button for the main action. Its width is `fixedWidth`, or depends on its title.
PlainButton {
    id: control

    required property string title
    /// In points. If it is 0, the width depends on the title.
    property real fixedWidth: 0

    readonly property real sidePadding: fixedWidth > 0 ? 0 : 16

    implicitWidth: fixedWidth > 0 ? fixedWidth : implicitContentWidth + leftPadding + rightPadding
    leftPadding: sidePadding
    rightPadding: sidePadding
    text: title

    background: RoundedRectangle {
        border.color: Tokens.controlBorder
        border.width: Tokens.controlBorderWidth
        color: !control.enabled ? Tokens.actionDisabled : control.down ? Tokens.actionPressed : control.hovered ? Tokens.actionHovered : Tokens.action
        radius: Tokens.buttonRadius

        FocusRing {
            innerRadius: Tokens.buttonRadius
            visible: control.visualFocus
        }
    }
    contentItem: Label {
        color: control.enabled ? Tokens.actionText : Tokens.labelTertiary
        elide: Text.ElideRight
        font: Tokens.emphasis
        horizontalAlignment: Text.AlignHCenter
        text: control.title
        verticalAlignment: Text.AlignVCenter
    }
}
