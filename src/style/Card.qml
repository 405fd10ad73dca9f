import QtQuick
import Kelvo

/// A group of rows on a common background.
Item {
    id: card

    default property alias rows: column.data

    implicitHeight: column.implicitHeight

    RoundedRectangle {
        anchors.fill: parent
        border.color: Tokens.cardLine
        border.width: Tokens.hairlineWidth
        color: Tokens.card
        radius: Tokens.cardRadius
    }
    Column {
        id: column

        anchors.left: parent.left
        anchors.right: parent.right
    }
}
