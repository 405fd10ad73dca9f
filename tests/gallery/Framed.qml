import QtQuick
import Kelvo

/// A view in a window as on a desktop: with round corners and a shadow, and a title bar if it has a title.
Rectangle {
    id: ground

    required property url view
    required property var properties
    required property string title
    required property color desktop

    readonly property real margin: 40
    readonly property real titleBar: title === "" ? 0 : 30

    color: desktop
    implicitHeight: loader.height + titleBar + 2 * margin
    implicitWidth: loader.width + 2 * margin

    WindowShadow {
        anchors.fill: frame
        anchors.bottomMargin: -blur - Tokens.windowShadowDrop
        anchors.margins: -blur
        anchors.topMargin: -blur + Tokens.windowShadowDrop
        blur: Tokens.windowShadowBlur
        color: Tokens.shadow
    }
    Rectangle {
        anchors.fill: frame
        anchors.margins: -Tokens.hairlineWidth
        color: Tokens.hairline
        radius: Tokens.windowRadius + Tokens.hairlineWidth
    }
    Rectangle {
        id: frame

        anchors.fill: parent
        anchors.margins: ground.margin
        color: Tokens.window
        radius: Tokens.windowRadius
    }
    Text {
        anchors.horizontalCenter: frame.horizontalCenter
        anchors.top: frame.top
        anchors.topMargin: (ground.titleBar - height) / 2
        color: Tokens.labelPrimary
        font: Tokens.emphasis
        text: ground.title
        textFormat: Text.PlainText
    }
    Loader {
        id: loader

        x: ground.margin
        y: ground.margin + ground.titleBar
    }

    Component.onCompleted: loader.setSource(view, properties)
}
