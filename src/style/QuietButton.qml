import QtQuick
import Kelvo

/// A button that shows only its title. It is higher than its title, because it is a target for the pointer.
PlainButton {
    id: control

    required property string title
    required property color color

    implicitHeight: Math.max(Tokens.targetSize, implicitContentHeight)
    text: title

    contentItem: Label {
        color: control.enabled ? control.color : Tokens.labelTertiary
        elide: Text.ElideRight
        font: Tokens.metadata
        opacity: control.down ? 0.55 : control.hovered ? 0.8 : 1
        text: control.title
        verticalAlignment: Text.AlignVCenter

        FocusRing {
            anchors.bottomMargin: 1
            anchors.leftMargin: -6
            anchors.rightMargin: -6
            anchors.topMargin: 1
            innerRadius: Tokens.textRadius
            visible: control.visualFocus
        }
    }
}
