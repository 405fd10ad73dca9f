import QtQuick
import Kelvo

/// A button without an appearance of its own, as a screen reader sees it.
ButtonItem {
    Accessible.name: text
    Accessible.pressed: down
    Accessible.role: Accessible.Button
    implicitHeight: Math.max(implicitBackgroundHeight, implicitContentHeight + topPadding + bottomPadding)
    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)

    Accessible.onPressAction: press()
}
