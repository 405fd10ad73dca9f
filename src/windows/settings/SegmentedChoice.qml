pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// A choice whose options are side by side.
ChoiceGroup {
    id: choice

    required property list<string> titles

    readonly property real inset: 2
    readonly property real segmentWidth: {
        let widest = 0;
        for (let i = 0; i < segments.count; ++i) {
            widest = Math.max(widest, (segments.itemAt(i) as ChoiceOption)?.implicitWidth ?? 0);
        }
        return Math.ceil(widest);
    }

    implicitHeight: Tokens.segmentHeight
    implicitWidth: segments.count * segmentWidth
    options: segments

    Keys.onLeftPressed: chooseByKey(LayoutMirroring.enabled ? 1 : -1)
    Keys.onRightPressed: chooseByKey(LayoutMirroring.enabled ? -1 : 1)

    RoundedRectangle {
        anchors.fill: parent
        border.color: Tokens.controlBorder
        border.width: Tokens.controlBorderWidth
        color: Tokens.segmentTrack
        radius: Tokens.segmentRadius
    }
    Item {
        id: thumb

        readonly property Item segment: segments.count > 0 ? segments.itemAt(choice.current) : null

        height: choice.height
        objectName: "thumb"
        width: choice.segmentWidth
        x: segment ? segment.x : 0

        Behavior on x {
            enabled: !Tokens.reduceMotion

            NumberAnimation {
                duration: Tokens.controlSlide.duration
                easing: Tokens.controlSlide.curve
            }
        }

        WindowShadow {
            anchors.fill: face
            anchors.margins: -blur
            anchors.topMargin: -blur + 1
            blur: 3
            color: Tokens.segmentShadow
        }
        RoundedRectangle {
            anchors.fill: face
            anchors.margins: -Tokens.hairlineWidth
            border.color: Tokens.cardLine
            border.width: Tokens.hairlineWidth
            color: "transparent"
            radius: face.radius + Tokens.hairlineWidth
        }
        RoundedRectangle {
            id: face

            anchors.fill: parent
            anchors.margins: choice.inset
            border.color: Tokens.controlBorder
            border.width: Tokens.controlBorderWidth
            color: Tokens.segmentFace
            radius: Tokens.segmentRadius - choice.inset
        }
    }
    Row {
        anchors.fill: parent

        Repeater {
            id: segments

            model: choice.titles

            ChoiceOption {
                id: segment

                group: choice
                height: choice.height
                implicitWidth: implicitContentWidth + leftPadding + rightPadding
                leftPadding: 13
                objectName: "segment-" + index
                rightPadding: 13
                width: choice.segmentWidth

                contentItem: Label {
                    color: segment.checked || segment.down ? Tokens.labelPrimary : segment.hovered ? Tokens.segmentHovered : Tokens.labelSecondary
                    font: Tokens.status
                    horizontalAlignment: Text.AlignHCenter
                    text: segment.text
                    verticalAlignment: Text.AlignVCenter
                }

                FocusRing {
                    anchors.margins: choice.inset - border.width
                    innerRadius: face.radius
                    visible: segment.visualFocus
                }
            }
        }
    }
}
