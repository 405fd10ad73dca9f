import QtQuick

/// A text without markup, aligned to the leading edge. It is not an element of the accessibility tree.
Text {
    horizontalAlignment: Text.AlignLeft
    textFormat: Text.PlainText
}
