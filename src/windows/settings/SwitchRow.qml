import QtQuick
import Kelvo

/// A switch with a title and an explanation below it.
ToggleRow {
    id: row

    /// A tag beside the title; may be empty.
    property string tag: ""
    required property string subtitle

    Accessible.description: subtitle
    implicitHeight: Math.max(texts.implicitHeight, mark.height) + 18

    CardRow {
        anchors.fill: parent
        down: row.containsPress
        focused: row.visualFocus
        hovered: row.hovered
    }

    Item {
        anchors.fill: parent
        anchors.leftMargin: Tokens.rowPadding
        anchors.rightMargin: Tokens.rowPadding

        Column {
            id: texts

            anchors.left: parent.left
            anchors.right: mark.left
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            spacing: 1

            Row {
                id: titleLine

                spacing: 8
                width: parent.width

                Label {
                    id: titleText

                    color: row.enabled ? Tokens.labelPrimary : Tokens.labelTertiary
                    font: Tokens.row
                    objectName: "title"
                    text: row.title
                    width: Math.min(implicitWidth, titleLine.width - (tagText.visible ? tagText.width + titleLine.spacing : 0))
                    wrapMode: Text.Wrap
                }
                CapsTag {
                    id: tagText

                    anchors.baseline: titleText.baseline
                    color: Tokens.labelTertiary
                    objectName: "tag"
                    title: row.tag
                    visible: row.tag !== ""
                }
            }
            Prose {
                Accessible.ignored: true
                color: Tokens.labelSecondary
                font: Tokens.footnote
                objectName: "subtitle"
                width: parent.width
                words: row.subtitle
            }
        }
        SwitchMark {
            id: mark

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            isHovered: row.hovered
            isOn: row.isOn
            objectName: "switch"
            opacity: row.enabled ? 1 : 0.5
        }
    }
}
