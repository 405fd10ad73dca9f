import QtQuick
import Kelvo

/// A group of rows on a ground of their own.
Item {
    id: card

    default property alias rows: column.data

    implicitHeight: column.implicitHeight

    Rectangle {
        anchors.fill: parent
        color: Qt.alpha(Tokens.primary, 0.06)
        radius: 9
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: 1
        color: Tokens.card
        radius: 8
    }
    Column {
        id: column

        anchors.left: parent.left
        anchors.right: parent.right
    }
}
