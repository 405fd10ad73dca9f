import QtQuick
import Kelvo

/// The line between a row of a card and the one above it.
Rectangle {
    anchors.left: parent.left
    anchors.leftMargin: 1
    anchors.right: parent.right
    anchors.rightMargin: 1
    color: Qt.alpha(Tokens.primary, 0.06)
    height: 1
}
