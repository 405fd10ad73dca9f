pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// Dots that show the number of pages and the current page.
Row {
    id: dots

    required property int count
    required property int current

    Accessible.name: "Page " + (current + 1) + " of " + count
    Accessible.role: Accessible.StaticText
    spacing: 6

    Repeater {
        model: dots.count

        StatusDot {
            required property int index

            color: index === dots.current ? Tokens.labelSecondary : Tokens.pageDot
            height: 6
            objectName: "dot-" + index
            width: 6
        }
    }
}
