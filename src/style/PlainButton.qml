import QtQuick
import QtQuick.Templates as T

/// A button without an appearance of its own. Return, Enter, Space and the press action of a screen reader activate it.
/// A disabled button does nothing.
T.Button {
    id: control

    function press() {
        if (enabled) {
            clicked();
        }
    }

    Accessible.name: text
    Accessible.role: Accessible.Button
    implicitHeight: Math.max(implicitBackgroundHeight, implicitContentHeight + topPadding + bottomPadding)
    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)

    Accessible.onPressAction: control.press()
    Keys.onEnterPressed: control.press()
    Keys.onReturnPressed: control.press()
}
