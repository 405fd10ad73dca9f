import QtQuick
import Kelvo

/// A row of the channel list.
PlainButton {
    id: row

    required property string title
    /// May be empty.
    required property string stateText
    required property bool isArmed

    Accessible.description: isArmed ? "Alerts go here" : ""
    Accessible.name: stateText === "" ? title : title + ", " + stateText
    hoverEnabled: true
    text: title

    background: CardRow {
        down: row.down
        focused: row.visualFocus
        hovered: row.hovered
        implicitHeight: Tokens.rowHeight
    }

    Item {
        anchors.fill: parent

        Label {
            anchors.left: parent.left
            anchors.leftMargin: Tokens.rowPadding
            anchors.verticalCenter: parent.verticalCenter
            color: row.enabled ? Tokens.labelPrimary : Tokens.labelTertiary
            font: Tokens.row
            objectName: "title"
            text: row.title
        }
        Label {
            anchors.right: checkmark.left
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            color: row.enabled ? Tokens.labelSecondary : Tokens.labelTertiary
            font: Tokens.metadata
            objectName: "state"
            text: row.stateText
        }
        LineSymbol {
            id: checkmark

            anchors.right: parent.right
            anchors.rightMargin: Tokens.rowPadding
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
}
