import QtQuick
import Kelvo

/// A dot that pulsates while it is visible, unless the user asked for reduced motion.
StatusDot {
    id: dot

    readonly property bool isBreathing: visible && Window.visibility !== Window.Hidden && !Tokens.reduceMotion

    implicitHeight: 5
    implicitWidth: 5

    SequentialAnimation on opacity {
        loops: Animation.Infinite
        running: dot.isBreathing

        onStopped: dot.opacity = 1

        NumberAnimation {
            duration: Tokens.breath.duration
            easing: Tokens.breath.curve
            from: 1
            to: 0.45
        }
        NumberAnimation {
            duration: Tokens.breath.duration
            easing: Tokens.breath.curve
            from: 0.45
            to: 1
        }
    }
}
