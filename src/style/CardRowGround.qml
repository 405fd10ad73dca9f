import QtQuick
import Kelvo

/// What lies under a row of a card: a tint under the pointer, and the mark of the keyboard's focus. Not drawn to the
/// edges, so that it follows the round corners of the card.
Item {
    id: ground

    property bool down: false
    property bool hovered: false
    property bool focused: false

    Rectangle {
        anchors.fill: parent
        anchors.margins: 3
        color: ground.down ? Qt.alpha(Tokens.primary, 0.07) : ground.hovered ? Qt.alpha(Tokens.primary, 0.03) : "transparent"
        objectName: "tint"
        radius: 6

        FocusRing {
            innerRadius: 6
            objectName: "focusRing"
            visible: ground.focused
        }
    }
}
