import QtQuick
import Kelvo

/// A label and a read-only value.
Item {
    id: row

    required property string label
    required property string value

    Accessible.name: label + ": " + value
    Accessible.role: Accessible.StaticText
    implicitHeight: Math.max(ground.implicitHeight, valueText.height + 12)

    CardRow {
        id: ground

        anchors.fill: parent
        implicitHeight: Tokens.valueRowHeight
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
    Label {
        id: valueText

        anchors.left: labelText.right
        anchors.leftMargin: Tokens.rowPadding
        anchors.right: parent.right
        anchors.rightMargin: Tokens.rowPadding
        anchors.verticalCenter: parent.verticalCenter
        color: Tokens.labelSecondary
        font: Tokens.row
        horizontalAlignment: Text.AlignRight
        objectName: "value"
        text: row.value
        wrapMode: Text.Wrap
    }
}
