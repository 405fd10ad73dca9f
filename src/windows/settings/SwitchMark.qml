import QtQuick
import Kelvo

/// Draws a switch that is on or off.
Item {
    id: mark

    required property bool isOn
    property bool isHovered: false

    implicitHeight: Tokens.switchHeight
    implicitWidth: Tokens.switchWidth

    PillShape {
        anchors.fill: parent
        color: mark.isOn ? Tokens.action : Tokens.switchTrack
        lineColor: mark.isOn ? Tokens.controlBorder : mark.isHovered ? Tokens.controlLineHovered : Tokens.controlLine
        lineWidth: mark.isOn ? Tokens.controlBorderWidth : Tokens.hairlineWidth
        objectName: "track"
    }
    StatusDot {
        color: Tokens.knobShadow
        height: knob.height
        width: knob.width
        x: knob.x
        y: knob.y + 1
    }
    StatusDot {
        id: knob

        readonly property bool atRight: mark.isOn !== mark.LayoutMirroring.enabled

        color: Tokens.switchKnob
        height: 15
        objectName: "knob"
        width: 15
        x: atRight ? parent.width - width - 2 : 2
        y: 2

        Behavior on x {
            enabled: !Tokens.reduceMotion

            NumberAnimation {
                duration: Tokens.controlSlide.duration
                easing: Tokens.controlSlide.curve
            }
        }
    }
}
