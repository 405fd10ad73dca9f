pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// How many pages there are, and which one is shown.
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
