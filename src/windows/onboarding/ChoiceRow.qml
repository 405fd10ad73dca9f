import QtQuick
import QtQuick.Templates as T
import Kelvo

/// One of several, in a list of which one can be selected.
T.RadioButton {
    id: row

    Accessible.name: text
    hoverEnabled: true
    implicitHeight: Math.max(24, nameText.implicitHeight + 6)

    background: CardRowGround {
        down: row.down
        focused: row.visualFocus
        hovered: row.hovered
    }

    Item {
        anchors.fill: parent

        Text {
            id: nameText

            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.right: checkmark.left
            anchors.verticalCenter: parent.verticalCenter
            color: Tokens.labelPrimary
            elide: Text.ElideRight
            font: Tokens.row
            horizontalAlignment: Text.AlignLeft
            objectName: "name"
            text: row.text
            textFormat: Text.PlainText
        }
        LineSymbol {
            id: checkmark

            anchors.right: parent.right
            anchors.rightMargin: 12
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

    CardRowRule {
    }
}
