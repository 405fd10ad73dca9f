import QtQuick
import QtQuick.Templates as T
import Kelvo

/// Shows the channel sheet as a modal dialog that hangs from the top of its window.
T.Popup {
    id: popup

    required property SettingsState settings
    required property ChannelSheetState sheet
    /// An announcer outside of the sheet: a screen reader reads a dialog again before a notification inside of it.
    required property Announcer announcer

    /// The item that had the focus before, and gets it again when the sheet closes.
    property Item formerFocus: null
    property bool formerFocusWasShown: false

    closePolicy: T.Popup.CloseOnEscape
    dim: true
    focus: true
    height: contentItem.implicitHeight
    modal: true
    parent: T.Overlay.overlay
    width: contentItem.implicitWidth
    x: Math.round(((parent?.width ?? 0) - width) / 2)

    T.Overlay.modal: RoundedRectangle {
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
        // The upper corners are above the edge of the window.
        RoundedRectangle {
            anchors.fill: parent
            anchors.margins: -Tokens.hairlineWidth
            anchors.topMargin: -radius
            color: Tokens.hairline
            radius: Tokens.windowRadius + Tokens.hairlineWidth
        }
        RoundedRectangle {
            anchors.fill: parent
            anchors.topMargin: -radius
            color: Tokens.window
            radius: Tokens.windowRadius
        }
    }
    contentItem: ChannelSheet {
        id: sheetView

        focus: true
        objectName: "channelSheet"
        sheet: popup.sheet

        onAnnounced: text => popup.announcer.announce(text)
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

    Component.onCompleted: {
        // A screen reader sees the item that Qt makes for the popup as a dialog without a name.
        contentItem.parent.Accessible.name = sheet.title;
        open();
        sheetView.selectFirstField();
    }
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
