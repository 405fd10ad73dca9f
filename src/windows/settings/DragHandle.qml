import QtQuick
import Kelvo

/// The handle that drags a row.
DragArea {
    id: handle

    cursorShape: isDragging ? Qt.ClosedHandCursor : Qt.OpenHandCursor
    implicitWidth: 28

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
