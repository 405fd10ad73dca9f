import QtQuick
import Kelvo

/// The focus indicator. It is drawn just outside of the item that it surrounds.
RoundedRectangle {
    /// The corner radius of the surrounded item.
    property real innerRadius: 0

    anchors.fill: parent
    anchors.margins: -border.width
    border.color: Tokens.focusRing
    border.width: Tokens.focusRingWidth
    color: "transparent"
    radius: innerRadius + border.width
}
