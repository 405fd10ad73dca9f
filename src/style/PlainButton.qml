import QtQuick
import QtQuick.Templates as T

/// A button without an appearance of its own. Return, Enter, Space and the press action of a screen reader activate it,
/// once for each press: a key that is held down does not activate it again. A disabled button does nothing.
T.Button {
    id: control

    function press() {
        if (enabled) {
            clicked();
        }
    }
    function pressByKey(event: KeyEvent) {
        if (!event.isAutoRepeat) {
            press();
        }
    }

    Accessible.name: text
    Accessible.role: Accessible.Button
    implicitHeight: Math.max(implicitBackgroundHeight, implicitContentHeight + topPadding + bottomPadding)
    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)

    Accessible.onPressAction: control.press()
    Keys.onEnterPressed: event => control.pressByKey(event)
    Keys.onReleased: event => event.accepted = event.key === Qt.Key_Space
    Keys.onReturnPressed: event => control.pressByKey(event)
    Keys.onSpacePressed: event => control.pressByKey(event)
}
