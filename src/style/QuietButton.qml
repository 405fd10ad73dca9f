import QtQuick
import Kelvo

/// A button that shows only its title.
PlainButton {
    id: control

    required property string title
    required property color color

    text: title

    contentItem: Label {
        color: control.color
        elide: Text.ElideRight
        font: Tokens.metadata
        opacity: !control.enabled ? 0.4 : control.down ? 0.55 : control.hovered ? 0.8 : 1
        text: control.title

        FocusRing {
            anchors.margins: -4
            innerRadius: Tokens.textRadius
            visible: control.visualFocus
        }
    }
}
