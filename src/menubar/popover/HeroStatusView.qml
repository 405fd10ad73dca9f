import QtQuick
import Kelvo

/// The large block at the top with the status of one service.
HeroItem {
    id: hero

    required property PopoverState popover
    /// Whether a change of the status is animated.
    property bool animated: false

    Accessible.role: Accessible.StaticText
    implicitHeight: checkedLine.y + checkedLine.height
    spokenText: popover.spokenHero

    onAnimatedChanged: swap.complete()

    Label {
        id: name

        anchors.left: parent.left
        color: Tokens.labelPrimary
        font: Tokens.heroTitle
        objectName: "heroName"
        text: hero.popover.heroName
        width: Math.min(implicitWidth, hero.width - (affected.visible ? affected.width + affected.anchors.leftMargin : 0))
        wrapMode: Text.Wrap
    }
    Label {
        id: affected

        anchors.baseline: name.baseline
        anchors.left: name.right
        anchors.leftMargin: 8
        color: Tokens.labelQuaternary
        font: Tokens.affectedTag
        objectName: "affectedTag"
        text: "AFFECTED"
        visible: hero.popover.heroIsPromoted
    }
    StatusLine {
        id: statusLine

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: name.bottom
        anchors.topMargin: 5
        health: hero.popover.heroHealth
        label: hero.popover.heroStatusLabel
        objectName: "statusLine"

        // The label and the health change one after the other, in either order. The old values are kept for the animation.
        onHealthChanged: {
            if (label === hero.popover.heroStatusLabel) {
                shown.health = health;
            }
        }
        onLabelChanged: swap.begin()
    }
    StatusLine {
        id: formerStatusLine

        anchors.fill: statusLine
        label: ""
        objectName: "formerStatusLine"
        opacity: 0
        visible: opacity > 0
    }
    Label {
        id: body

        readonly property real lineSpacing: 5.625

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: statusLine.bottom
        anchors.topMargin: 9
        color: Tokens.labelSecondary
        font: Tokens.bodyText
        lineHeight: metrics.height + lineSpacing
        lineHeightMode: Text.FixedHeight
        objectName: "bodyLine"
        text: hero.popover.heroBodyLine
        wrapMode: Text.Wrap

        FontMetrics {
            id: metrics

            font: body.font
        }
    }
    Row {
        id: checkedLine

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: body.bottom
        // The height of the text includes the line spacing after the last line.
        anchors.topMargin: 8 - body.lineSpacing
        spacing: 6

        BreathingDot {
            id: breathingDot

            color: statusLine.dotColor
            objectName: "breathingDot"
            y: (checked.height - height) / 2
        }
        Label {
            id: checked

            color: Tokens.labelQuaternary
            font: Tokens.checkedTime
            objectName: "checkedText"
            text: hero.popover.checkedText
            width: Math.min(implicitWidth, checkedLine.width - breathingDot.width - checkedLine.spacing)
            wrapMode: Text.Wrap
        }
    }
    ParallelAnimation {
        id: swap

        property string shownLabel: ""

        readonly property HealthColors shownColors: HealthColors {
            id: shown
        }

        /// The previous status, which fades out while the new one fades in.
        function begin() {
            formerStatusLine.label = shownLabel;
            formerStatusLine.health = shown.health;
            shownLabel = hero.popover.heroStatusLabel;
            shown.health = hero.popover.heroHealth;
            if (hero.animated) {
                restart();
            }
        }

        NumberAnimation {
            duration: Tokens.statusSwap.duration
            easing: Tokens.statusSwap.curve
            from: 0
            property: "opacity"
            target: statusLine
            to: 1
        }
        NumberAnimation {
            duration: Tokens.statusSwap.duration
            easing: Tokens.statusSwap.curve
            from: 1
            property: "opacity"
            target: formerStatusLine
            to: 0
        }
    }
}
