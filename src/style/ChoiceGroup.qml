import QtQuick

/// A choice of one of several options. It shows `current`; the signal `chosen` reports what the user chooses. The Tab key
/// moves the focus to the chosen option only, and the arrow keys choose. A screen reader sees a group with a name.
Item {
    /// The name of the group.
    required property string title
    /// The index of the chosen option, or -1.
    required property int current
    /// Creates the options; each is a ChoiceOption.
    required property Repeater options

    readonly property int tabStop: Math.max(0, current)

    signal chosen(int index)
    /// The user pressed Return or Enter on an option, which is chosen then.
    signal confirmed

    /// Chooses the option `step` options further, at most the first or the last one, and moves the focus to it.
    function chooseByKey(step: int) {
        const next = Math.max(0, Math.min(current + step, options.count - 1));
        if (next !== current) {
            chosen(next);
        }
        options.itemAt(next).forceActiveFocus(Qt.TabFocusReason);
    }

    Accessible.name: title
    Accessible.role: Accessible.Grouping

    Keys.onDownPressed: chooseByKey(1)
    Keys.onUpPressed: chooseByKey(-1)
}
