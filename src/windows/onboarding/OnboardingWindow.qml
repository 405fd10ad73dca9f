import QtQuick
import Kelvo

/// The view of the onboarding window: four pages with navigation buttons below.
FocusScope {
    id: root

    required property OnboardingState onboarding

    readonly property int page: onboarding.page

    Accessible.name: "Welcome to Kelvo"
    Accessible.role: Accessible.Pane
    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    focus: true
    implicitHeight: Tokens.onboardingHeight
    implicitWidth: Tokens.onboardingWidth

    // Each new page moves the focus to the main button. The focus ring is visible if the keyboard changed the page.
    onPageChanged: {
        mainButton.forceActiveFocus(pages.turnedByKey ? Qt.TabFocusReason : Qt.OtherFocusReason);
        if (!Tokens.reduceMotion) {
            appear.restart();
        }
    }

    component Page: OnboardingPage {
        anchors.fill: parent
    }

    Item {
        id: pages

        /// Whether the last page was left with the keyboard. The focus ring on the next page depends on it.
        property bool turnedByKey: false

        anchors.bottom: bar.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        objectName: "pages"

        Page {
            body: "Kelvo watches the AI tools you work in and notifies you the moment one is usable again."
            heading: "Stop checking.\nWe’ll tell you."
            headingFont: Tokens.heroTitle
            objectName: "promise"
            visible: root.page === OnboardingState.Promise

            KelvoMark {
                coreColor: Tokens.availableDot
                objectName: "mark"
                size: 54
            }
        }
        PrimaryPicker {
            anchors.fill: parent
            objectName: "primaryPicker"
            onboarding: root.onboarding
            visible: root.page === OnboardingState.PrimaryPicker
        }
        Page {
            body: "One notification when a service you rely on is usable again. Nothing else, ever."
            heading: "Kelvo needs to notify you"
            objectName: "permission"
            visible: root.page === OnboardingState.Permission

            LineSymbol {
                color: Tokens.labelSecondary
                height: 38
                lineWidth: 2.6
                objectName: "bell"
                shape: LineSymbol.Bell
                width: 38
            }
        }
        Page {
            body: "You can forget about Kelvo now. Look for the ring in your menu bar."
            heading: "You’re all set"
            objectName: "complete"
            remark: root.onboarding.watchingText
            visible: root.page === OnboardingState.Complete

            LineSymbol {
                color: Tokens.availableDot
                height: 38
                lineWidth: 2.6
                objectName: "checkmark"
                shape: LineSymbol.CheckInCircle
                width: 38
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
        target: pages
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
            current: root.page
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
                objectName: "back"
                title: "Back"
                visible: root.page === OnboardingState.PrimaryPicker

                onClicked: {
                    pages.turnedByKey = visualFocus;
                    root.onboarding.backToPromise();
                }
            }
            QuietButton {
                anchors.verticalCenter: parent.verticalCenter
                color: Tokens.labelSecondary
                objectName: "notNow"
                title: "Not now"
                visible: root.page === OnboardingState.Permission

                onClicked: {
                    pages.turnedByKey = visualFocus;
                    root.onboarding.skipPermission();
                }
            }
            FilledButton {
                id: mainButton

                enabled: root.page !== OnboardingState.PrimaryPicker || root.onboarding.hasSelection
                focus: true
                height: Tokens.buttonHeight
                objectName: "mainButton"
                title: {
                    switch (root.page) {
                    case OnboardingState.Permission:
                        return "Allow notifications";
                    case OnboardingState.Complete:
                        return "Done";
                    default:
                        return "Continue";
                    }
                }

                onClicked: {
                    pages.turnedByKey = visualFocus;
                    switch (root.page) {
                    case OnboardingState.Promise:
                        root.onboarding.continueToPicker();
                        break;
                    case OnboardingState.PrimaryPicker:
                        root.onboarding.continueToPermission();
                        break;
                    case OnboardingState.Permission:
                        root.onboarding.allowNotifications();
                        break;
                    case OnboardingState.Complete:
                        root.onboarding.finish();
                        break;
                    }
                }
            }
        }
    }
}
