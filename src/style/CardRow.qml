import QtQuick
import QtQuick.Templates as T
import Kelvo

/// What a row of a card stands on: the line under the row above it, a tint under the pointer, and the mark of the
/// keyboard's focus. Its implicit height is the least height of the row. The tint does not reach the edges, so that it
/// follows the round corners of the card.
Item {
    id: ground

    /// The row, where it is a button.
    property T.AbstractButton button: null
    property bool down: button?.down ?? false
    property bool hovered: button?.hovered ?? false
    property bool focused: button?.visualFocus ?? false
    property bool hasRule: (parent?.y ?? 0) > 0

    CardRowRule {
        visible: ground.hasRule
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: 3
        color: ground.down ? Tokens.rowPressed : ground.hovered ? Tokens.rowHovered : "transparent"
        objectName: "tint"
        radius: Tokens.rowRadius

        FocusRing {
            innerRadius: parent.radius
            objectName: "focusRing"
            visible: ground.focused
        }
    }
}
