import QtQuick
import Kelvo

/// The mark of keyboard focus, drawn just outside of what it surrounds.
Rectangle {
    /// The corner radius of what is surrounded.
    property real innerRadius: 0

    anchors.fill: parent
    anchors.margins: -border.width
    border.color: Tokens.focusRing
    border.width: Tokens.focusRingWidth
    color: "transparent"
    radius: innerRadius + border.width
}
