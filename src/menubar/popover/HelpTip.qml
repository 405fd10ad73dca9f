import QtQuick
import Kelvo

/// A tool tip below an item, or above it where the window ends. It appears after a delay.
RoundedRectangle {
    id: tip

    required property Item target
    required property string text
    /// Whether the tip is to appear after its delay.
    required property bool wanted

    readonly property real distance: 3
    readonly property real margin: 6

    function show() {
        const below = target.mapToItem(parent, (target.width - width) / 2, target.height + distance);
        const above = target.mapToItem(parent, 0, -height - distance);
        x = Math.max(margin, Math.min(below.x, parent.width - margin - width));
        y = below.y + height + margin > parent.height ? above.y : below.y;
        visible = true;
    }

    Accessible.name: text
    Accessible.role: Accessible.ToolTip
    border.color: Tokens.hairline
    border.width: Tokens.hairlineWidth
    color: Tokens.card
    height: label.implicitHeight + 8
    parent: target.Window.contentItem
    radius: Tokens.highlightRadius
    visible: false
    width: label.implicitWidth + 14
    z: 1

    onWantedChanged: visible = false

    Label {
        id: label

        color: Tokens.labelPrimary
        font: Tokens.metadata
        text: tip.text
        x: 7
        y: 4
    }
    Timer {
        interval: Tokens.helpDelay
        running: tip.wanted

        onTriggered: tip.show()
    }
}
