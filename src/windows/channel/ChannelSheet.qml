pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// The settings of one channel. Every keystroke is stored at once, so the sheet has no Save and no Cancel button.
FocusScope {
    id: root

    required property ChannelSheetState sheet

    signal done
    /// A button has had an effect. `text` tells it to a screen reader.
    signal announced(string text)

    function selectFirstField() {
        (fieldRows.itemAt(0) as FieldRow)?.selectAll();
    }

    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    implicitHeight: column.implicitHeight
    implicitWidth: Tokens.sheetWidth

    component Note: Prose {
        lineHeight: 1.08
        visible: words !== ""
        width: parent.width
    }

    Column {
        id: column

        anchors.left: parent.left
        anchors.leftMargin: Tokens.windowPadding
        anchors.right: parent.right
        anchors.rightMargin: Tokens.windowPadding
        bottomPadding: Tokens.sheetPadding
        spacing: 12
        topPadding: Tokens.sheetPadding

        Column {
            spacing: 5
            width: parent.width

            Paragraph {
                Accessible.role: Accessible.Heading
                color: Tokens.labelPrimary
                font: Tokens.channelTitle
                objectName: "title"
                text: root.sheet.title
                width: parent.width
            }
            Note {
                color: Tokens.labelSecondary
                font: Tokens.bodyText
                objectName: "description"
                words: root.sheet.description
            }
        }
        Card {
            objectName: "fields"
            visible: root.sheet.fields.length > 0
            width: parent.width

            Repeater {
                id: fieldRows

                model: root.sheet.fields

                FieldRow {
                    required property ChannelField modelData
                    required property int index

                    focus: index === 0
                    label: modelData.label
                    objectName: "field-" + index
                    placeholder: modelData.placeholder
                    text: modelData.text
                    width: column.width

                    onEdited: text => modelData.text = text
                }
            }
        }
        Card {
            width: parent.width

            ValueRow {
                label: "Tell me about"
                objectName: "toldAbout"
                content: root.sheet.toldAbout
                width: parent.width
            }
            ValueRow {
                label: "Test message"
                objectName: "testResult"
                content: root.sheet.testResult
                width: parent.width
            }
        }
        Note {
            color: Tokens.labelSecondary
            font: Tokens.footnote
            objectName: "footnote"
            words: root.sheet.footnote
        }
        Item {
            implicitHeight: arm.height
            width: parent.width

            FilledButton {
                id: arm

                anchors.left: parent.left
                enabled: root.sheet.isConfigured
                height: Tokens.smallButtonHeight
                objectName: "arm"
                title: root.sheet.isArmed ? "Armed" : "Arm this channel"

                onClicked: {
                    root.sheet.arm();
                    root.announced(title);
                }
            }
            QuietButton {
                anchors.left: arm.right
                anchors.leftMargin: 14
                anchors.verticalCenter: arm.verticalCenter
                color: Tokens.link
                enabled: root.sheet.isConfigured
                objectName: "sendTest"
                title: "Send test"

                onClicked: root.sheet.sendTest()
            }
            QuietButton {
                anchors.right: parent.right
                anchors.verticalCenter: arm.verticalCenter
                color: Tokens.labelSecondary
                focus: root.sheet.fields.length === 0
                objectName: "done"
                title: "Done"

                onClicked: root.done()
            }
        }
    }
    Connections {
        function onTestEnded() {
            root.announced(root.sheet.testResult);
        }

        target: root.sheet
    }
}
