import QtQuick
import Kelvo

/// One option in a list of options.
ChoiceOption {
    id: row

    implicitHeight: Math.max(implicitBackgroundHeight, nameText.implicitHeight + 6)

    background: CardRow {
        down: row.down
        focused: row.visualFocus
        hovered: row.hovered
        implicitHeight: Tokens.choiceRowHeight
    }

    Item {
        anchors.fill: parent

        Label {
            id: nameText

            anchors.left: parent.left
            anchors.leftMargin: Tokens.rowPadding
            anchors.right: checkmark.left
            anchors.verticalCenter: parent.verticalCenter
            color: Tokens.labelPrimary
            elide: Text.ElideRight
            font: Tokens.row
            objectName: "name"
            text: row.text
        }
        LineSymbol {
            id: checkmark

            anchors.right: parent.right
            anchors.rightMargin: Tokens.rowPadding
            anchors.verticalCenter: parent.verticalCenter
            color: Tokens.action
            height: 11
            lineWidth: 2
            objectName: "checkmark"
            shape: LineSymbol.Check
            visible: row.checked
            width: 11
        }
    }
}
