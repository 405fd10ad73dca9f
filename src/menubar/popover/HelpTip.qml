import QtQuick
import QtQuick.Templates as T
import Kelvo

/// A tool tip that appears at the pointer.
T.ToolTip {
    id: tip

    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent
    delay: Tokens.helpDelay
    implicitHeight: contentHeight + topPadding + bottomPadding
    implicitWidth: contentWidth + leftPadding + rightPadding
    margins: 6
    padding: 4
    horizontalPadding: 7
    x: parent ? (parent.width - implicitWidth) / 2 : 0
    y: parent ? parent.height + 3 : 0

    background: Rectangle {
        border.color: Tokens.hairline
        color: Tokens.card
        radius: Tokens.highlightRadius
    }
    contentItem: Label {
        color: Tokens.labelPrimary
        font: Tokens.metadata
        text: tip.text
    }
}
