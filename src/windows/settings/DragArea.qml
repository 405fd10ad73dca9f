import QtQuick

/// An area that drags the row that contains it. Its signals use window coordinates, because the row moves with the
/// pointer.
MouseArea {
    id: area

    /// Whether the pointer has moved since the mouse button was pressed.
    property bool isDragging: false
    property bool hasDragged: false
    property point pressedAt

    signal dragBegan(point at)
    signal dragMoved(point at)
    signal dropped
    signal dragCanceled
    /// The mouse button was pressed and released without a drag.
    signal tapped

    hoverEnabled: true
    preventStealing: true

    onCanceled: {
        isDragging = false;
        dragCanceled();
    }
    onClicked: {
        if (!hasDragged) {
            tapped();
        }
    }
    onPositionChanged: mouse => {
        const at = mapToItem(null, mouse.x, mouse.y);
        if (!pressed) {
            return;
        }
        if (!isDragging && Math.abs(at.y - pressedAt.y) > 4) {
            isDragging = true;
            hasDragged = true;
            dragBegan(pressedAt);
        }
        if (isDragging) {
            dragMoved(at);
        }
    }
    onPressed: mouse => {
        hasDragged = false;
        pressedAt = mapToItem(null, mouse.x, mouse.y);
    }
    onReleased: {
        if (isDragging) {
            isDragging = false;
            dropped();
        }
    }
}
