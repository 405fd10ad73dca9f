import QtQuick
import Kelvo

/// The line between a row of a card and the row above it.
RoundedRectangle {
    anchors.left: parent.left
    anchors.leftMargin: Tokens.hairlineWidth
    anchors.right: parent.right
    anchors.rightMargin: Tokens.hairlineWidth
    color: Tokens.cardLine
    height: Tokens.hairlineWidth
}
