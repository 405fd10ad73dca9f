import QtQuick
import Kelvo

/// The handle that drags a row. Its signals use window coordinates, because the row moves with the pointer.
MouseArea {
    id: handle

    /// Whether the pointer has moved since the mouse button was pressed.
    property bool isDragging: false
    property point pressedAt

    signal dragBegan(point at)
    signal dragMoved(point at)
    signal dropped
    signal dragCanceled

    cursorShape: isDragging ? Qt.ClosedHandCursor : Qt.OpenHandCursor
    hoverEnabled: true
    implicitWidth: 28
    preventStealing: true

    onCanceled: {
        isDragging = false;
        dragCanceled();
    }
    onPositionChanged: mouse => {
        const at = mapToItem(null, mouse.x, mouse.y);
        if (!pressed) {
            return;
        }
        if (!isDragging && Math.abs(at.y - pressedAt.y) > 4) {
            isDragging = true;
            dragBegan(pressedAt);
        }
        if (isDragging) {
            dragMoved(at);
        }
    }
    onPressed: mouse => {
        pressedAt = mapToItem(null, mouse.x, mouse.y);
    }
    onReleased: {
        if (isDragging) {
            isDragging = false;
            dropped();
        }
    }

    LineSymbol {
        anchors.centerIn: parent
        color: handle.containsMouse || handle.isDragging ? Tokens.labelSecondary : Tokens.labelTertiary
        height: 11
        lineWidth: 2
        objectName: "grip"
        shape: LineSymbol.Grip
        width: 11
    }
}
