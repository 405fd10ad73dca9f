import QtQuick
import Kelvo

/// A page of the onboarding window: its content, and below it a bar with the page dots and the buttons. When the page
/// appears, its main button gets the focus, and a screen reader tells the page's heading and texts.
FocusScope {
    id: page

    required property string heading
    /// The position of the page.
    required property int index
    /// Whether the last page was left with the keyboard. The focus ring on this page depends on it.
    required property bool turnedByKey
    required property string mainTitle
    property bool isMainEnabled: true
    /// The title of the quiet button beside the main one; there is none if it is empty.
    property string otherTitle: ""

    /// The height that the content needs.
    property real contentHeight: 0
    default property alias content: place.data

    /// A button was clicked. `byKey` tells whether the focus ring was visible.
    signal mainClicked(bool byKey)
    signal otherClicked(bool byKey)

    Accessible.name: heading.replace("\n", " ")
    Accessible.role: Accessible.Grouping
    implicitHeight: contentHeight + Tokens.barHeight
    implicitWidth: Tokens.onboardingWidth

    onVisibleChanged: {
        if (visible) {
            mainButton.forceActiveFocus(turnedByKey ? Qt.TabFocusReason : Qt.OtherFocusReason);
            if (!Tokens.reduceMotion) {
                appear.restart();
            }
        }
    }

    Item {
        id: place

        anchors.bottom: bar.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        objectName: "content"
    }
    NumberAnimation {
        id: appear

        duration: Tokens.statusSwap.duration
        easing: Tokens.statusSwap.curve
        from: 0
        property: "opacity"
        target: place
        to: 1
    }
    Item {
        id: bar

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        height: Tokens.barHeight

        PageDots {
            anchors.left: parent.left
            anchors.leftMargin: Tokens.barPadding
            anchors.verticalCenter: buttons.verticalCenter
            count: 4
            current: page.index
            objectName: "dots"
        }
        Row {
            id: buttons

            anchors.bottom: parent.bottom
            anchors.bottomMargin: 13
            anchors.right: parent.right
            anchors.rightMargin: Tokens.barPadding
            spacing: 16

            QuietButton {
                anchors.verticalCenter: parent.verticalCenter
                color: Tokens.labelSecondary
                objectName: "otherButton"
                title: page.otherTitle
                visible: title !== ""

                onClicked: page.otherClicked(visualFocus)
            }
            FilledButton {
                id: mainButton

                enabled: page.isMainEnabled
                focus: true
                height: Tokens.buttonHeight
                objectName: "mainButton"
                title: page.mainTitle

                onClicked: page.mainClicked(visualFocus)
            }
        }
    }
}
