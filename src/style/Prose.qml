import QtQuick
import Kelvo

/// A paragraph whose last line has at least two words.
Paragraph {
    required property string words

    Accessible.name: words
    text: words.replace(/ (?=\S+$)/, "\u00a0")
}
