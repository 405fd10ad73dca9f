pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// A choice of one among a few, side by side.
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

    implicitHeight: 30
    implicitWidth: segments.count * segmentWidth
    options: segments

    Keys.onLeftPressed: chooseByKey(LayoutMirroring.enabled ? 1 : -1)
    Keys.onRightPressed: chooseByKey(LayoutMirroring.enabled ? -1 : 1)

    Rectangle {
        anchors.fill: parent
        color: Qt.alpha(Tokens.primary, 0.07)
        radius: 8
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
                duration: 160
                easing: Tokens.statusSwap.curve
            }
        }

        WindowShadow {
            anchors.fill: face
            anchors.margins: -blur
            anchors.topMargin: -blur + 1
            blur: 3
            color: Qt.alpha("black", 0.2)
        }
        Rectangle {
            anchors.fill: face
            anchors.margins: -1
            color: Qt.alpha(Tokens.primary, 0.06)
            radius: 7
        }
        Rectangle {
            id: face

            anchors.fill: parent
            anchors.margins: choice.inset
            color: Tokens.card
            radius: 6
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
                objectName: "segment-" + index
                padding: 13
                width: choice.segmentWidth

                contentItem: Label {
                    color: segment.checked || segment.down ? Tokens.labelPrimary : segment.hovered ? Qt.alpha(Tokens.primary, 0.7) : Tokens.labelSecondary
                    font: Tokens.status
                    horizontalAlignment: Text.AlignHCenter
                    text: segment.text
                    verticalAlignment: Text.AlignVCenter
                }

                FocusRing {
                    anchors.margins: choice.inset - border.width
                    innerRadius: 6
                    visible: segment.visualFocus
                }
            }
        }
    }
}
