import QtQuick

/// A choice of one of several options. It shows `current`; the signal `chosen` reports what the user chooses. The Tab key
/// moves the focus to the chosen option only, and the arrow keys choose.
Item {
    /// The index of the chosen option, or -1.
    required property int current
    /// Creates the options; each is a ChoiceOption.
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
