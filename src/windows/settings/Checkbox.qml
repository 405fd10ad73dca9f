import QtQuick
import Kelvo

/// A square check box. It shows `isOn` and does not change it; the item that contains it handles clicks.
PlainButton {
    id: box

    required property bool isOn

    readonly property real reach: 6

    Accessible.ignored: true
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    padding: reach

    contentItem: Rectangle {
        border.color: box.hovered || box.down ? Tokens.checkboxLineHovered : Tokens.checkboxLine
        border.width: box.isOn ? 0 : Tokens.hairlineWidth
        color: !box.isOn ? Tokens.textField : box.down ? Tokens.actionPressed : box.hovered ? Tokens.actionHovered : Tokens.action
        implicitHeight: Tokens.checkboxSize
        implicitWidth: Tokens.checkboxSize
        objectName: "box"
        radius: Tokens.checkboxRadius

        LineSymbol {
            anchors.centerIn: parent
            color: Tokens.actionText
            height: 10
            lineWidth: 1.7
            objectName: "checkmark"
            shape: LineSymbol.Check
            visible: box.isOn
            width: 10
        }
    }
}
