import QtQuick
import Kelvo

/// The drawing of a switch that is on or off.
Item {
    id: mark

    required property bool isOn

    implicitHeight: 19
    implicitWidth: 32

    PillShape {
        anchors.fill: parent
        color: mark.isOn ? Tokens.action : Qt.alpha(Tokens.primary, 0.14)
        objectName: "track"
    }
    StatusDot {
        color: Qt.alpha("black", 0.12)
        height: knob.height
        width: knob.width
        x: knob.x
        y: knob.y + 1
    }
    StatusDot {
        id: knob

        readonly property bool atRight: mark.isOn !== mark.LayoutMirroring.enabled

        color: "white"
        height: 15
        objectName: "knob"
        width: 15
        x: atRight ? parent.width - width - 2 : 2
        y: 2

        Behavior on x {
            enabled: !Tokens.reduceMotion

            NumberAnimation {
                duration: 160
                easing: Tokens.statusSwap.curve
            }
        }
    }
}
