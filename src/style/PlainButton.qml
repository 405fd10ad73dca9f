import QtQuick
import QtQuick.Templates as T

/// A button without a look of its own. Enter works as Space does.
T.Button {
    implicitHeight: Math.max(implicitBackgroundHeight, implicitContentHeight + topPadding + bottomPadding)
    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)

    Keys.onEnterPressed: click()
    Keys.onReturnPressed: click()
}
