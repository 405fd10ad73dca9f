import QtQuick
import Kelvo

/// The view of the onboarding window: four pages, of which one is visible.
FocusScope {
    id: root

    required property OnboardingState onboarding

    readonly property int page: onboarding.page
    /// Whether the last page was left with the keyboard.
    property bool turnedByKey: false

    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    focus: true
    implicitHeight: Math.ceil(Math.max(Tokens.onboardingHeight, promise.implicitHeight, picker.implicitHeight, permission.implicitHeight, complete.implicitHeight))
    implicitWidth: Tokens.onboardingWidth

    SymbolPage {
        id: promise

        anchors.fill: parent
        body: "Kelvo watches the AI tools you work in and notifies you the moment one is usable again."
        focus: true
        heading: "Stop checking.\nWe’ll tell you."
        headingFont: Tokens.heroTitle
        index: OnboardingState.Promise
        mainTitle: "Continue"
        objectName: "promise"
        turnedByKey: root.turnedByKey
        visible: root.page === index

        onMainClicked: byKey => {
            root.turnedByKey = byKey;
            root.onboarding.continueToPicker();
        }

        KelvoMark {
            anchors.centerIn: parent
            coreColor: Tokens.availableDot
            objectName: "mark"
            size: 54
        }
    }
    PrimaryPicker {
        id: picker

        anchors.fill: parent
        index: OnboardingState.PrimaryPicker
        mainTitle: "Continue"
        objectName: "primaryPicker"
        onboarding: root.onboarding
        otherTitle: "Back"
        turnedByKey: root.turnedByKey
        visible: root.page === index

        onMainClicked: byKey => {
            root.turnedByKey = byKey;
            root.onboarding.continueToPermission();
        }
        onOtherClicked: byKey => {
            root.turnedByKey = byKey;
            root.onboarding.backToPromise();
        }
    }
    SymbolPage {
        id: permission

        anchors.fill: parent
        body: "One notification when a service you rely on is usable again. Nothing else, ever."
        heading: "Kelvo needs to notify you"
        index: OnboardingState.Permission
        mainTitle: "Allow notifications"
        objectName: "permission"
        otherTitle: "Not now"
        turnedByKey: root.turnedByKey
        visible: root.page === index

        onMainClicked: byKey => {
            root.turnedByKey = byKey;
            root.onboarding.allowNotifications();
        }
        onOtherClicked: byKey => {
            root.turnedByKey = byKey;
            root.onboarding.skipPermission();
        }

        LineSymbol {
            anchors.centerIn: parent
            color: Tokens.labelSecondary
            height: 38
            lineWidth: 2.6
            objectName: "bell"
            shape: LineSymbol.Bell
            width: 38
        }
    }
    SymbolPage {
        id: complete

        anchors.fill: parent
        body: "You can forget about Kelvo now. Look for the ring in your menu bar."
        heading: "You’re all set"
        index: OnboardingState.Complete
        mainTitle: "Done"
        objectName: "complete"
        remark: root.onboarding.watchingText
        turnedByKey: root.turnedByKey
        visible: root.page === index

        onMainClicked: root.onboarding.finish()

        LineSymbol {
            anchors.centerIn: parent
            color: Tokens.availableDot
            height: 38
            lineWidth: 2.6
            objectName: "checkmark"
            shape: LineSymbol.CheckInCircle
            width: 38
        }
    }
}
