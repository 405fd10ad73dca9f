import QtQuick

/// A choice of one among several options. It shows what it is told to; `chosen` says what the user wants. The tab key
/// reaches the options as one, and the arrow keys choose.
Item {
    /// The position of the chosen option; -1 when there is none.
    required property int current
    /// Makes the options, each a ChoiceOption.
    required property Repeater options

    readonly property int tabStop: Math.max(0, current)

    signal chosen(int index)

    function chooseByKey(step: int) {
        const next = Math.max(0, Math.min(current + step, options.count - 1));
        if (next !== current) {
            chosen(next);
            options.itemAt(next).forceActiveFocus(Qt.TabFocusReason);
        }
    }

    Keys.onDownPressed: chooseByKey(1)
    Keys.onUpPressed: chooseByKey(-1)
}
