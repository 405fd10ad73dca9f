import QtQuick
import Kelvo

/// A row that turns something on or off. It shows `isOn` and emits `toggled` when the user operates it; whether the state
/// then changes is up to the item that contains it. It has no appearance.
// A check box of Qt changes its own state first and tells a screen reader that state.
Item {
    id: row

    required property string title
    required property bool isOn

    readonly property alias hovered: hover.hovered
    readonly property alias containsPress: press.containsPress
    /// Whether the focus ring is visible: not while the focus comes from the mouse.
    readonly property bool visualFocus: activeFocus && !isFocusedByMouse
    property bool isFocusedByMouse: false

    signal toggled

    function toggle() {
        if (enabled) {
            toggled();
        }
    }
    function toggleByKey(event: KeyEvent) {
        if (!event.isAutoRepeat) {
            toggle();
        }
    }
    function focusByMouse() {
        isFocusedByMouse = true;
        forceActiveFocus(Qt.MouseFocusReason);
    }

    Accessible.checkable: true
    Accessible.checked: isOn
    Accessible.name: title
    Accessible.role: Accessible.CheckBox
    activeFocusOnTab: true

    Accessible.onPressAction: toggle()
    Accessible.onToggleAction: toggle()
    Keys.onEnterPressed: event => toggleByKey(event)
    Keys.onPressed: event => {
        isFocusedByMouse = false;
        event.accepted = false;
    }
    Keys.onReturnPressed: event => toggleByKey(event)
    Keys.onSpacePressed: event => toggleByKey(event)
    onActiveFocusChanged: {
        if (!activeFocus) {
            isFocusedByMouse = false;
        }
    }

    HoverHandler {
        id: hover
    }
    MouseArea {
        id: press

        anchors.fill: parent
        objectName: "press"

        onClicked: row.toggle()
        onPressed: row.focusByMouse()
    }
}
