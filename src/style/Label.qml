import QtQuick

/// A text without markup, at the leading edge. A screen reader does not hear it by itself.
Text {
    horizontalAlignment: Text.AlignLeft
    textFormat: Text.PlainText
}
