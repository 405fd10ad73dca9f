import QtQuick
import Kelvo

/// A small tag that shows its text in capitals.
Label {
    id: tag

    required property string title

    font: Tokens.trackedTagCaps
    text: title.toUpperCase()
}
