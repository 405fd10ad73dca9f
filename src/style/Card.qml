import QtQuick
import Kelvo

/// A group of rows on a common background.
Item {
    id: card

    default property alias rows: column.data

    implicitHeight: column.implicitHeight

    Rectangle {
        anchors.fill: parent
        color: Tokens.cardLine
        radius: Tokens.cardRadius
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: Tokens.hairlineWidth
        color: Tokens.card
        radius: Tokens.cardRadius - Tokens.hairlineWidth
    }
    Column {
        id: column

        anchors.left: parent.left
        anchors.right: parent.right
    }
}
