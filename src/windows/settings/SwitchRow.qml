import QtQuick
import QtQuick.Templates as T
import Kelvo

/// A switch with a title and an explanation below it. It shows `isOn` and emits `flipped` when the user operates it.
T.CheckBox {
    id: row

    required property string title
    /// A tag beside the title; may be empty.
    property string tag: ""
    required property string subtitle
    required property bool isOn

    signal flipped(bool on)

    function flip() {
        flipped(!isOn);
    }

    Accessible.description: subtitle
    Accessible.name: title
    checkState: isOn ? Qt.Checked : Qt.Unchecked
    hoverEnabled: true
    implicitHeight: Math.max(texts.implicitHeight, mark.height) + 18
    // The requested change may be refused, so the check state follows `isOn` and not the click.
    nextCheckState: () => {
        flip();
        return isOn ? Qt.Checked : Qt.Unchecked;
    }
    text: title

    background: CardRow {
        button: row
    }

    Accessible.onPressAction: flip()
    Accessible.onToggleAction: flip()
    Keys.onEnterPressed: flip()
    Keys.onReturnPressed: flip()

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
            Label {
                color: row.enabled ? Tokens.labelSecondary : Tokens.labelTertiary
                font: Tokens.footnote
                objectName: "subtitle"
                text: row.subtitle
                width: parent.width
                wrapMode: Text.Wrap
            }
        }
        SwitchMark {
            id: mark

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            isOn: row.isOn
            objectName: "switch"
            opacity: row.enabled ? 1 : 0.5
        }
    }
}
