import QtQuick
import Kelvo

/// Draws a square check box.
RoundedRectangle {
    id: box

    required property bool isOn
    property bool isHovered: false
    property bool isPressed: false

    border.color: isOn ? Tokens.controlBorder : isHovered ? Tokens.controlLineHovered : Tokens.controlLine
    border.width: isOn ? Tokens.controlBorderWidth : Tokens.hairlineWidth
    color: !isOn ? Tokens.textField : isPressed ? Tokens.actionPressed : isHovered ? Tokens.actionHovered : Tokens.action
    implicitHeight: Tokens.checkboxSize
    implicitWidth: Tokens.checkboxSize
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
