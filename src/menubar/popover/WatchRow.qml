import QtQuick
import Kelvo

/// A row with a watched service and its dot. It extends its content by `reach` on each side, for the hover highlight.
PopoverButton {
    id: row

    required property string name
    required property serviceHealth health
    required property string label
    /// Whether a screen reader is told what the row does.
    property bool hasHint: true

    readonly property real sideReach: 6
    readonly property real reach: 2

    Accessible.description: hasHint ? "Shows this service's status at the top" : ""
    Accessible.name: name + ", " + (label === "" ? "not checked yet" : label)
    bottomPadding: reach
    hoverEnabled: true
    leftPadding: sideReach
    rightPadding: sideReach
    text: name
    topPadding: reach

    background: RoundedRectangle {
        color: row.down ? Tokens.highlightPressed : row.hovered || row.visualFocus ? Tokens.highlight : "transparent"
        objectName: "highlight"
        radius: Tokens.highlightRadius

        RoundedRectangle {
            anchors.fill: parent
            border.color: Tokens.action
            border.width: Tokens.focusRingWidth
            color: "transparent"
            objectName: "focusRing"
            radius: parent.radius
            visible: row.visualFocus
        }
    }
    contentItem: Item {
        implicitHeight: nameText.implicitHeight

        Label {
            id: nameText

            anchors.left: parent.left
            anchors.right: dot.left
            anchors.rightMargin: 8
            color: Tokens.watchName
            font: Tokens.rowStrong
            objectName: "name"
            text: row.name
            wrapMode: Text.Wrap
        }
        StatusDot {
            id: dot

            anchors.right: parent.right
            color: colors.dot
            height: 7
            objectName: "dot"
            width: 7
            y: (nameText.height - height) / 2
        }
    }

    HealthColors {
        id: colors

        health: row.health
    }
    Loader {
        active: row.hovered

        // `pragma ComponentBehavior: Bound` would make `row` known to qmllint, but Qt 6.4 cannot load this component then.
        // qmllint disable unqualified
        sourceComponent: HelpTip {
            objectName: "help"
            target: row
            text: "Show " + row.name + " above"
            wanted: row.hovered && !row.down
        }
        // qmllint enable unqualified
    }
}
