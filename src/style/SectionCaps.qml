import QtQuick
import Kelvo

/// The heading of a section in capitals; its text is given in ordinary case.
Paragraph {
    required property string title

    Accessible.name: title
    color: Tokens.labelQuaternary
    font: Tokens.trackedSectionCaps
    text: title.toUpperCase()
}
