import QtQuick
import Kelvo

/// A row of the channel list.
PlainButton {
    id: row

    required property string title
    /// May be empty.
    required property string stateText
    required property bool isArmed
    /// What the user should know about the channel; may be empty.
    required property string help

    Accessible.description: (isArmed ? "Alerts go here" : "") + (isArmed && help !== "" ? ". " : "") + help
    Accessible.name: stateText === "" ? title : title + ", " + stateText
    hoverEnabled: true
    text: title

    background: CardRow {
        down: row.down
        focused: row.visualFocus
        hovered: row.hovered
        implicitHeight: row.help === "" ? Tokens.rowHeight : helpText.y + helpText.height + 9
    }

    Item {
        anchors.fill: parent

        // The first line.
        Item {
            id: line

            height: Tokens.rowHeight
            width: parent.width
        }
        Label {
            id: titleText

            anchors.left: parent.left
            anchors.leftMargin: Tokens.rowPadding
            anchors.verticalCenter: line.verticalCenter
            color: row.enabled ? Tokens.labelPrimary : Tokens.labelTertiary
            font: Tokens.row
            objectName: "title"
            text: row.title
        }
        Label {
            anchors.right: checkmark.left
            anchors.rightMargin: 10
            anchors.verticalCenter: line.verticalCenter
            color: row.enabled ? Tokens.labelSecondary : Tokens.labelTertiary
            font: Tokens.metadata
            objectName: "state"
            text: row.stateText
        }
        LineSymbol {
            id: checkmark

            anchors.right: parent.right
            anchors.rightMargin: Tokens.rowPadding
            anchors.verticalCenter: line.verticalCenter
            color: Tokens.action
            height: 12
            lineWidth: 2
            objectName: "checkmark"
            shape: LineSymbol.Check
            visible: row.isArmed
            width: 12
        }
        Prose {
            id: helpText

            Accessible.ignored: true
            anchors.left: parent.left
            anchors.leftMargin: Tokens.rowPadding
            anchors.right: parent.right
            anchors.rightMargin: Tokens.rowPadding
            anchors.top: titleText.bottom
            anchors.topMargin: 1
            color: Tokens.labelSecondary
            font: Tokens.footnote
            objectName: "help"
            visible: row.help !== ""
            words: row.help
        }
    }
}
