import QtQuick
import Kelvo

/// A channel that alerts can go to.
PlainButton {
    id: row

    required property string title
    /// May be empty.
    required property string stateText
    required property bool isArmed

    Accessible.description: isArmed ? "Alerts go here" : ""
    Accessible.name: stateText === "" ? title : title + ", " + stateText
    hoverEnabled: true
    implicitHeight: 34
    text: title

    background: CardRowGround {
        down: row.down
        focused: row.visualFocus
        hovered: row.hovered
    }

    Item {
        anchors.fill: parent

        Text {
            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            color: row.enabled ? Tokens.labelPrimary : Tokens.labelTertiary
            font: Tokens.row
            objectName: "title"
            text: row.title
            textFormat: Text.PlainText
        }
        Text {
            anchors.right: checkmark.left
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            color: row.enabled ? Tokens.labelSecondary : Tokens.labelTertiary
            font: Tokens.metadata
            objectName: "state"
            text: row.stateText
            textFormat: Text.PlainText
        }
        LineSymbol {
            id: checkmark

            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            color: Tokens.action
            height: 12
            lineWidth: 2
            objectName: "checkmark"
            shape: LineSymbol.Check
            visible: row.isArmed
            width: 12
        }
    }

    CardRowRule {
    }
}
