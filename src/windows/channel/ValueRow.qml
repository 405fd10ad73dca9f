import QtQuick
import Kelvo

/// A label and a read-only value.
Item {
    id: row

    required property string label
    // Not "value", because Qt takes a property of that name for the number of a slider.
    required property string content

    Accessible.name: label + ": " + content
    Accessible.role: Accessible.StaticText
    implicitHeight: Math.max(ground.implicitHeight, valueText.height + 10)

    CardRow {
        id: ground

        anchors.fill: parent
        implicitHeight: Tokens.rowHeight
    }
    Label {
        id: labelText

        anchors.left: parent.left
        anchors.leftMargin: Tokens.rowPadding
        anchors.verticalCenter: parent.verticalCenter
        color: Tokens.labelPrimary
        font: Tokens.row
        objectName: "label"
        text: row.label
    }
    Prose {
        id: valueText

        Accessible.ignored: true
        anchors.left: labelText.right
        anchors.leftMargin: Tokens.rowPadding
        anchors.right: parent.right
        anchors.rightMargin: Tokens.rowPadding
        anchors.verticalCenter: parent.verticalCenter
        color: Tokens.labelSecondary
        font: Tokens.row
        horizontalAlignment: Text.AlignRight
        objectName: "value"
        words: row.content
    }
}
