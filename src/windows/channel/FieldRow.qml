import QtQuick
import QtQuick.Templates as T
import Kelvo

/// A text field with a label. It shows `text` and emits `edited` for every keystroke.
FocusScope {
    id: row

    required property string label
    required property string placeholder
    required property string text

    signal edited(string text)

    implicitHeight: Math.max(ground.implicitHeight, field.height + 12, labelText.height + 12)

    CardRow {
        id: ground

        anchors.fill: parent
        implicitHeight: Tokens.fieldRowHeight
    }
    Label {
        id: labelText

        anchors.left: parent.left
        anchors.leftMargin: Tokens.rowPadding
        anchors.right: field.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        color: Tokens.labelPrimary
        font: Tokens.row
        objectName: "label"
        text: row.label
        wrapMode: Text.Wrap
    }
    T.TextField {
        id: field

        Accessible.name: row.label
        anchors.right: parent.right
        anchors.rightMargin: Tokens.rowPadding
        anchors.verticalCenter: parent.verticalCenter
        color: Tokens.labelPrimary
        focus: true
        font: Tokens.bodyText
        hoverEnabled: true
        implicitHeight: Math.max(Tokens.fieldHeight, contentHeight + topPadding + bottomPadding)
        // The fields contain addresses and secrets, which an input method must not learn, complete or correct.
        inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText | Qt.ImhSensitiveData
        leftPadding: 8
        objectName: "input"
        placeholderText: row.placeholder
        placeholderTextColor: Tokens.labelQuaternary
        rightPadding: 8
        selectByMouse: true
        selectedTextColor: Tokens.actionText
        selectionColor: Tokens.action
        text: row.text
        verticalAlignment: TextInput.AlignVCenter
        width: Tokens.fieldWidth

        background: Rectangle {
            border.color: field.hovered ? Tokens.fieldLineHovered : Tokens.fieldLine
            color: Tokens.textField
            radius: Tokens.fieldRadius

            FocusRing {
                anchors.margins: -Tokens.hairlineWidth
                innerRadius: Tokens.fieldRadius - Tokens.hairlineWidth
                visible: field.activeFocus
            }
        }

        Keys.onEnterPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
        Keys.onReturnPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
        // Show the beginning of a long text.
        Component.onCompleted: cursorPosition = 0
        onActiveFocusChanged: {
            if (!activeFocus) {
                cursorPosition = 0;
            }
        }
        onTextEdited: row.edited(text)

        Label {
            color: field.placeholderTextColor
            elide: Text.ElideRight
            font: field.font
            height: parent.height
            objectName: "placeholder"
            text: field.placeholderText
            verticalAlignment: Text.AlignVCenter
            visible: field.length === 0 && field.preeditText === ""
            width: field.width - field.leftPadding - field.rightPadding
            x: field.leftPadding
        }
    }
}
