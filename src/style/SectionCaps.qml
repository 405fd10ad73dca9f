import QtQuick
import Kelvo

/// The heading of a section. It shows its text in capitals.
Paragraph {
    required property string title

    Accessible.name: title
    color: Tokens.labelQuaternary
    font: Tokens.trackedSectionCaps
    text: title.toUpperCase()
}
