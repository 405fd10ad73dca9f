import QtQuick
import Kelvo

/// A dot and a status label in the colours of a health.
Row {
    id: line

    required property string label
    property alias health: colors.health
    readonly property alias dotColor: colors.dot

    spacing: 7

    HealthColors {
        id: colors
    }
    StatusDot {
        id: dot

        color: colors.dot
        height: 8
        objectName: "statusDot"
        width: 8
        y: (text.height - height) / 2
    }
    Label {
        id: text

        color: colors.text
        font: Tokens.statusLabel
        objectName: "statusLabel"
        text: line.label
        width: Math.min(implicitWidth, line.width - dot.width - line.spacing)
        wrapMode: Text.Wrap
    }
}
