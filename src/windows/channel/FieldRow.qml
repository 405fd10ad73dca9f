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

    function selectAll() {
        field.selectAll();
    }

    implicitHeight: Math.max(ground.implicitHeight, field.height + 10, labelText.height + 10)

    CardRow {
        id: ground

        anchors.fill: parent
        implicitHeight: Tokens.rowHeight
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

        readonly property bool isEdited: activeFocus || menu.visible

        function showMenu(at: point) {
            forceActiveFocus(Qt.MouseFocusReason);
            menu.popup(at.x, at.y);
        }
        function showMenuByKey(event: KeyEvent) {
            const isMenuKey = event.key === Qt.Key_Menu || event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier;
            event.accepted = isMenuKey;
            if (isMenuKey) {
                showMenu(Qt.point(cursorRectangle.x, height));
            }
        }

        Accessible.name: row.label
        anchors.right: parent.right
        anchors.rightMargin: Tokens.rowPadding
        anchors.verticalCenter: parent.verticalCenter
        color: isEdited ? Tokens.labelPrimary : "transparent"
        focus: true
        font: Tokens.bodyText
        hoverEnabled: true
        implicitHeight: Math.max(Tokens.fieldHeight, contentHeight + topPadding + bottomPadding)
        // The fields contain addresses and secrets, which an input method must not learn, complete or correct.
        inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText | Qt.ImhSensitiveData
        leftPadding: 8
        objectName: "input"
        persistentSelection: menu.visible
        placeholderText: row.placeholder
        placeholderTextColor: Tokens.labelTertiary
        rightPadding: 8
        selectByMouse: true
        selectedTextColor: Tokens.actionText
        selectionColor: Tokens.action
        text: row.text
        verticalAlignment: TextInput.AlignVCenter
        width: Tokens.fieldWidth

        background: RoundedRectangle {
            border.color: field.hovered ? Tokens.fieldLineHovered : Tokens.fieldLine
            border.width: Tokens.hairlineWidth
            color: Tokens.textField
            radius: Tokens.fieldRadius

            FocusRing {
                anchors.margins: -Tokens.hairlineWidth
                innerRadius: Tokens.fieldRadius - Tokens.hairlineWidth
                visible: field.isEdited
            }
        }

        Keys.onEnterPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
        Keys.onPressed: event => showMenuByKey(event)
        Keys.onReturnPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
        onIsEditedChanged: {
            if (!isEdited) {
                deselect();
            }
        }
        onPressed: event => {
            if (event.button === Qt.RightButton) {
                showMenu(Qt.point(event.x, event.y));
            }
        }
        onTextEdited: row.edited(text)

        // What the field shows while it is not edited. An edited text scrolls with the cursor instead.
        Label {
            color: field.length > 0 ? Tokens.labelPrimary : field.placeholderTextColor
            elide: Text.ElideRight
            font: field.font
            height: parent.height
            objectName: "still"
            text: field.length > 0 ? field.text : field.placeholderText
            verticalAlignment: Text.AlignVCenter
            visible: field.length > 0 ? !field.isEdited : field.preeditText === ""
            width: field.width - field.leftPadding - field.rightPadding
            x: field.leftPadding
        }
        TextMenu {
            id: menu

            field: field
            objectName: "menu"
        }
    }
}
