pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Kelvo

/// A choice of one among a few, side by side. It shows what it is told to; `chosen` says what the user wants. The
/// keyboard reaches it as one, and the arrow keys choose.
Item {
    id: choice

    required property list<string> titles
    required property int current

    readonly property real inset: 2
    readonly property real segmentWidth: {
        let widest = 0;
        for (let i = 0; i < segments.count; ++i) {
            widest = Math.max(widest, (segments.itemAt(i) as T.RadioButton)?.implicitWidth ?? 0);
        }
        return Math.ceil(widest);
    }

    signal chosen(int index)

    function chooseByKey(step: int) {
        const next = current + step;
        if (next >= 0 && next < segments.count) {
            chosen(next);
            segments.itemAt(next).forceActiveFocus(Qt.TabFocusReason);
        }
    }

    implicitHeight: 30
    implicitWidth: segments.count * segmentWidth

    Keys.onDownPressed: chooseByKey(1)
    Keys.onLeftPressed: chooseByKey(LayoutMirroring.enabled ? 1 : -1)
    Keys.onRightPressed: chooseByKey(LayoutMirroring.enabled ? -1 : 1)
    Keys.onUpPressed: chooseByKey(-1)

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

            T.RadioButton {
                id: segment

                required property int index
                required property string modelData

                Accessible.name: text
                checked: choice.current === index
                focusPolicy: checked || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
                height: choice.height
                hoverEnabled: true
                implicitWidth: implicitContentWidth + leftPadding + rightPadding
                objectName: "segment-" + index
                padding: 13
                text: modelData
                width: choice.segmentWidth

                contentItem: Text {
                    color: segment.checked || segment.down ? Tokens.labelPrimary : segment.hovered ? Qt.alpha(Tokens.primary, 0.7) : Tokens.labelSecondary
                    font: Tokens.status
                    horizontalAlignment: Text.AlignHCenter
                    text: segment.text
                    textFormat: Text.PlainText
                    verticalAlignment: Text.AlignVCenter
                }

                Keys.onEnterPressed: choice.chosen(index)
                Keys.onReturnPressed: choice.chosen(index)
                onToggled: choice.chosen(index)

                FocusRing {
                    anchors.margins: choice.inset - border.width
                    innerRadius: 6
                    visible: segment.visualFocus
                }
            }
        }
    }
}
