pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// The view of the settings window: the content, which scrolls if the window is too low, and the channel sheet above it.
FocusScope {
    id: root

    required property SettingsState settings

    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    focus: true
    implicitHeight: Math.max(Tokens.settingsLeastHeight, content.implicitHeight)
    implicitWidth: Tokens.settingsWidth

    Keys.onEscapePressed: event => {
        event.accepted = content.services.isDragging;
        content.services.cancel();
    }

    ScrollArea {
        id: area

        anchors.fill: parent
        contentHeight: content.implicitHeight
        contentWidth: width
        focus: true
        objectName: "scrollArea"

        SettingsContent {
            id: content

            objectName: "content"
            settings: root.settings
            width: area.width
        }
    }
    Timer {
        id: edgeScroll

        readonly property real reach: 30
        readonly property real speed: {
            const y = content.services.pointerInWindow.y;
            const beyondTop = Math.min(y - reach, 0);
            const beyondBottom = Math.max(y - (area.height - reach), 0);
            return Math.max(-reach, Math.min(beyondTop + beyondBottom, reach)) / 3;
        }

        interval: Tokens.frameTime
        repeat: true
        running: content.services.isDragging && speed !== 0

        onTriggered: {
            area.scrollBy(speed);
            content.services.followScrolling();
        }
    }
    Announcer {
        id: announcer

        objectName: "announcer"
    }
    Connections {
        function onAnnounced(text: string) {
            announcer.announce(text);
        }

        target: content.services
    }
    Loader {
        id: sheetPlace

        onStatusChanged: {
            if (status === Loader.Error) {
                root.settings.reportFailedSheet();
            }
        }
    }
    Connections {
        function onChannelSheetChanged() {
            const sheet = root.settings.channelSheet;
            if (sheet) {
                sheetPlace.setSource("../channel/SheetPopup.qml", {
                    "announcer": announcer,
                    "settings": root.settings,
                    "sheet": sheet
                });
            } else {
                sheetPlace.source = "";
            }
        }

        target: root.settings
    }
}
