import QtQuick
import QtQuick.Templates as T
import Kelvo

/// A tool tip that appears at the pointer.
T.ToolTip {
    id: tip

    /// Whether the tip is to appear after its delay.
    required property bool wanted

    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent
    delay: Tokens.helpDelay
    implicitHeight: contentHeight + topPadding + bottomPadding
    implicitWidth: contentWidth + leftPadding + rightPadding
    margins: 6
    padding: 4
    horizontalPadding: 7
    x: parent ? (parent.width - implicitWidth) / 2 : 0
    y: parent ? parent.height + 3 : 0

    // Not bound from the start, because the delay may still be unknown then, and the tip would appear at once.
    Component.onCompleted: visible = Qt.binding(() => wanted)

    background: RoundedRectangle {
        border.color: Tokens.hairline
        border.width: Tokens.hairlineWidth
        color: Tokens.card
        radius: Tokens.highlightRadius
    }
    contentItem: Label {
        color: Tokens.labelPrimary
        font: Tokens.metadata
        text: tip.text
    }
}
