import QtQuick
import Kelvo

/// The first-run window's view: four pages, with what leads from one to the next below.
FocusScope {
    id: root

    required property OnboardingState onboarding

    Accessible.name: "Welcome to Kelvo"
    Accessible.role: Accessible.Pane
    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    focus: true
    implicitHeight: 300
    implicitWidth: 400

    component Buttons: Row {
        layoutDirection: Qt.RightToLeft
        spacing: 16
    }

    Component {
        id: promise

        OnboardingPage {
            body: "Kelvo watches the AI tools you work in and notifies you the moment one is usable again."
            heading: "Stop checking.\nWe’ll tell you."
            headingFont: Tokens.tracked(Tokens.heroName, -0.44)

            symbol: KelvoMark {
                coreColor: Tokens.availableDot
                objectName: "mark"
                size: 54
            }
        }
    }
    Component {
        id: primaryPicker

        Item {
            Text {
                id: pickerHeading

                Accessible.name: text
                Accessible.role: Accessible.Heading
                anchors.left: parent.left
                anchors.leftMargin: 32
                anchors.right: parent.right
                anchors.rightMargin: 32
                anchors.top: parent.top
                anchors.topMargin: 9
                color: Tokens.labelPrimary
                font: Tokens.windowTitle
                horizontalAlignment: Text.AlignLeft
                objectName: "heading"
                text: "Which one matters most?"
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
            }
            Text {
                id: pickerBody

                Accessible.name: text
                Accessible.role: Accessible.StaticText
                anchors.left: pickerHeading.left
                anchors.right: pickerHeading.right
                anchors.top: pickerHeading.bottom
                anchors.topMargin: 2
                color: Tokens.labelSecondary
                font: Tokens.bodyText
                horizontalAlignment: Text.AlignLeft
                objectName: "body"
                text: "This is the service Kelvo shows first. You can add more later."
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
            }
            PrimaryPicker {
                anchors.left: pickerHeading.left
                anchors.right: pickerHeading.right
                anchors.top: pickerBody.bottom
                anchors.topMargin: 8
                height: Math.min(implicitHeight, parent.height - y)
                objectName: "picker"
                onboarding: root.onboarding
            }
        }
    }
    Component {
        id: permission

        OnboardingPage {
            body: "One notification when a service you rely on is usable again. Nothing else, ever."
            heading: "Kelvo needs to notify you"

            symbol: LineSymbol {
                color: Tokens.labelSecondary
                height: 38
                lineWidth: 2.6
                objectName: "bell"
                shape: LineSymbol.Bell
                width: 38
            }
        }
    }
    Component {
        id: complete

        OnboardingPage {
            body: "You can forget about Kelvo now. Look for the ring in your menu bar."
            heading: "You’re all set"
            remark: root.onboarding.watchingText

            symbol: LineSymbol {
                color: Tokens.availableDot
                height: 38
                lineWidth: 2.6
                objectName: "checkmark"
                shape: LineSymbol.CheckInCircle
                width: 38
            }
        }
    }
    Component {
        id: promiseButtons

        Buttons {
            FilledButton {
                focus: true
                height: 28
                objectName: "continue"
                title: "Continue"

                onClicked: root.onboarding.continueToPicker()
            }
        }
    }
    Component {
        id: primaryPickerButtons

        Buttons {
            FilledButton {
                enabled: root.onboarding.selected >= 0
                focus: true
                height: 28
                objectName: "continue"
                title: "Continue"

                onClicked: root.onboarding.continueToPermission()
            }
            QuietButton {
                anchors.verticalCenter: parent.verticalCenter
                color: Tokens.labelSecondary
                objectName: "back"
                title: "Back"

                onClicked: root.onboarding.backToPromise()
            }
        }
    }
    Component {
        id: permissionButtons

        Buttons {
            FilledButton {
                focus: true
                height: 28
                objectName: "allow"
                title: "Allow notifications"

                onClicked: root.onboarding.allowNotifications()
            }
            QuietButton {
                anchors.verticalCenter: parent.verticalCenter
                color: Tokens.labelSecondary
                objectName: "notNow"
                title: "Not now"

                onClicked: root.onboarding.skipPermission()
            }
        }
    }
    Component {
        id: completeButtons

        Buttons {
            FilledButton {
                focus: true
                height: 28
                objectName: "done"
                title: "Done"

                onClicked: root.onboarding.finish()
            }
        }
    }

    Loader {
        id: page

        anchors.bottom: bar.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        objectName: "page"
        sourceComponent: [promise, primaryPicker, permission, complete][root.onboarding.page]

        onLoaded: {
            if (!Tokens.reduceMotion) {
                appear.restart();
            }
        }
    }
    NumberAnimation {
        id: appear

        duration: Tokens.statusSwap.duration
        easing: Tokens.statusSwap.curve
        from: 0
        objectName: "appear"
        property: "opacity"
        target: page
        to: 1
    }
    Item {
        id: bar

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        height: 55

        PageDots {
            anchors.left: parent.left
            anchors.leftMargin: 20
            anchors.verticalCenter: buttons.verticalCenter
            count: 4
            current: root.onboarding.page
            objectName: "dots"
        }
        Loader {
            id: buttons

            anchors.bottom: parent.bottom
            anchors.bottomMargin: 13
            anchors.right: parent.right
            anchors.rightMargin: 20
            focus: true
            sourceComponent: [promiseButtons, primaryPickerButtons, permissionButtons, completeButtons][root.onboarding.page]

            onLoaded: forceActiveFocus(Qt.OtherFocusReason)
        }
    }
}
