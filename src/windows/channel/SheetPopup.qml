import QtQuick
import QtQuick.Templates as T
import Kelvo

/// Shows the channel sheet above its window as a modal popup.
T.Popup {
    id: popup

    required property SettingsState settings
    required property ChannelSheetState sheet

    /// The item that had the focus before, and gets it again when the sheet closes.
    property Item formerFocus: null
    property bool formerFocusWasShown: false

    anchors.centerIn: T.Overlay.overlay
    closePolicy: T.Popup.CloseOnEscape
    dim: true
    focus: true
    height: contentItem.implicitHeight
    modal: true
    parent: T.Overlay.overlay
    width: contentItem.implicitWidth

    T.Overlay.modal: Rectangle {
        color: Tokens.dim
        objectName: "dim"
    }
    background: Item {
        WindowShadow {
            anchors.fill: parent
            anchors.bottomMargin: -blur - 8
            anchors.margins: -blur
            anchors.topMargin: -blur + 8
            blur: 24
            color: Tokens.shadow
        }
        Rectangle {
            anchors.fill: parent
            anchors.margins: -Tokens.hairlineWidth
            color: Tokens.hairline
            radius: Tokens.windowRadius + Tokens.hairlineWidth
        }
        Rectangle {
            anchors.fill: parent
            color: Tokens.window
            radius: Tokens.windowRadius
        }
    }
    contentItem: ChannelSheet {
        focus: true
        objectName: "channelSheet"
        sheet: popup.sheet

        onDone: popup.close()
    }
    enter: Transition {
        NumberAnimation {
            duration: Tokens.reduceMotion ? 0 : Tokens.sheetFade.duration
            easing: Tokens.sheetFade.curve
            from: 0
            property: "opacity"
            to: 1
        }
    }

    Component.onCompleted: open()
    onAboutToShow: {
        formerFocus = parent.Window.activeFocusItem;
        formerFocusWasShown = (formerFocus as T.Control)?.visualFocus ?? false;
    }
    onClosed: {
        if (formerFocus) {
            formerFocus.forceActiveFocus(formerFocusWasShown ? Qt.TabFocusReason : Qt.PopupFocusReason);
        }
        settings.dismissSheet();
    }
}
