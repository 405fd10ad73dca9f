pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Kelvo

/// The context menu of a text field.
T.Menu {
    id: menu

    required property T.TextField field

    focus: true
    height: contentItem.implicitHeight + topPadding + bottomPadding
    margins: 4
    padding: 5
    width: 132

    background: Item {
        WindowShadow {
            anchors.fill: parent
            anchors.bottomMargin: -blur - 3
            anchors.margins: -blur
            anchors.topMargin: -blur + 3
            blur: 12
            color: Tokens.shadow
        }
        RoundedRectangle {
            anchors.fill: parent
            anchors.margins: -Tokens.hairlineWidth
            color: Tokens.hairline
            radius: Tokens.rowRadius + Tokens.hairlineWidth
        }
        RoundedRectangle {
            anchors.fill: parent
            color: Tokens.card
            radius: Tokens.rowRadius
        }
    }
    contentItem: ListView {
        currentIndex: menu.currentIndex
        implicitHeight: contentHeight
        interactive: false
        model: menu.contentModel
    }

    component Entry: T.MenuItem {
        id: entry

        Accessible.name: text
        hoverEnabled: true
        implicitHeight: Math.max(Tokens.targetSize, title.implicitHeight + 6)
        objectName: text

        background: RoundedRectangle {
            color: entry.highlighted && entry.enabled ? Tokens.action : "transparent"
            radius: Tokens.checkboxRadius
        }
        contentItem: Label {
            id: title

            color: !entry.enabled ? Tokens.labelTertiary : entry.highlighted ? Tokens.actionText : Tokens.labelPrimary
            font: Tokens.row
            leftPadding: 8
            rightPadding: 8
            text: entry.text
            verticalAlignment: Text.AlignVCenter
        }
    }

    Entry {
        enabled: menu.field.selectedText !== ""
        text: "Cut"

        onTriggered: menu.field.cut()
    }
    Entry {
        enabled: menu.field.selectedText !== ""
        text: "Copy"

        onTriggered: menu.field.copy()
    }
    Entry {
        enabled: menu.field.canPaste
        text: "Paste"

        onTriggered: menu.field.paste()
    }
}
