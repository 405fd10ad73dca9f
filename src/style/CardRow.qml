import QtQuick
import Kelvo

/// The background of a row of a card: the line below the previous row, a tint while the pointer is over the row, and the
/// focus ring. Its implicit height is the minimum height of the row. The tint does not reach the edges because the card
/// has round corners.
Item {
    id: ground

    property bool down: false
    property bool hovered: false
    /// Whether the row has the keyboard focus.
    property bool focused: false
    property bool hasRule: (parent?.y ?? 0) > 0

    CardRowRule {
        visible: ground.hasRule
    }
    RoundedRectangle {
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
