import QtQuick
import Kelvo

/// A label that a screen reader hears by itself. It wraps.
Label {
    Accessible.name: text
    Accessible.role: Accessible.StaticText
    wrapMode: Text.Wrap
}
