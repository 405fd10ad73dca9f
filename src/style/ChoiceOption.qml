import QtQuick
import QtQuick.Templates as T
import Kelvo

/// An option of a ChoiceGroup. It has no appearance.
T.RadioButton {
    required property ChoiceGroup group
    required property int index
    required property string modelData

    function confirm(event: KeyEvent) {
        if (!event.isAutoRepeat) {
            group.chosen(index);
            group.confirmed();
        }
    }

    Accessible.name: text
    checked: group.current === index
    focusPolicy: activeFocus || group.tabStop === index ? Qt.StrongFocus : Qt.ClickFocus
    hoverEnabled: true
    text: modelData

    Keys.onEnterPressed: event => confirm(event)
    Keys.onReturnPressed: event => confirm(event)
    onToggled: group.chosen(index)
}
