import QtQuick
import QtQuick.Templates as T

/// A button without a look of its own. Enter works as Space does.
T.Button {
    id: control

    Accessible.name: text
    Accessible.role: Accessible.Button
    implicitHeight: Math.max(implicitBackgroundHeight, implicitContentHeight + topPadding + bottomPadding)
    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)

    Accessible.onPressAction: control.clicked()
    Keys.onEnterPressed: control.clicked()
    Keys.onReturnPressed: control.clicked()
}
