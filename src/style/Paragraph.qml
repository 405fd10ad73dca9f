import QtQuick
import Kelvo

/// A label that wraps and is an element of the accessibility tree.
Label {
    Accessible.name: text
    Accessible.role: Accessible.StaticText
    wrapMode: Text.Wrap
}
