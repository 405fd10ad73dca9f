import QtQuick
import Kelvo

/// A square check box. It shows what it is told to; the one who uses it says what a click does.
PlainButton {
    id: box

    required property bool isOn

    readonly property real reach: 6

    Accessible.ignored: true
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    padding: reach

    contentItem: Rectangle {
        border.color: Qt.alpha(Tokens.primary, box.hovered || box.down ? 0.36 : 0.2)
        border.width: box.isOn ? 0 : 1
        color: !box.isOn ? Tokens.textField : box.down ? Qt.darker(Tokens.action, 1.15) : box.hovered ? Qt.lighter(Tokens.action, 1.08) : Tokens.action
        implicitHeight: 15
        implicitWidth: 15
        objectName: "box"
        radius: 4

        LineSymbol {
            anchors.centerIn: parent
            color: "white"
            height: 10
            lineWidth: 1.7
            objectName: "checkmark"
            shape: LineSymbol.Check
            visible: box.isOn
            width: 10
        }
    }
}
