import QtQuick
import Kelvo

/// The logo: the ring with a dot in its centre. It is decoration beside a text, so it is not in the accessibility tree.
Item {
    id: mark

    /// The diameter of the ring's centre line, in points.
    required property real size
    required property color coreColor

    readonly property real unit: size / 32

    implicitHeight: size
    implicitWidth: size

    GappedRing {
        anchors.fill: parent
        anchors.margins: -inset
        color: Tokens.markRing
        inset: Math.ceil(lineWidth / 2)
        lineWidth: mark.unit * 2.1
    }
    StatusDot {
        color: mark.coreColor
        height: width
        width: mark.unit * 8.2
        // Not by anchors, which would move it by half a point off the centre of the ring.
        x: (mark.width - width) / 2
        y: (mark.height - height) / 2
    }
}
