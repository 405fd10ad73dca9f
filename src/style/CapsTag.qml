import QtQuick
import Kelvo

/// A small tag in capitals; its text is given in ordinary case.
Label {
    id: tag

    required property string title

    font: Tokens.trackedTagCaps
    text: title.toUpperCase()
}
