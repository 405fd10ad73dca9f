import QtQuick
import Kelvo

/// The footer with the armed channel and the settings button.
Item {
    id: footer

    required property PopoverState popover

    readonly property real gearSize: 14

    implicitHeight: rule.height + line.height

    RoundedRectangle {
        id: rule

        anchors.left: parent.left
        anchors.right: parent.right
        color: Tokens.separator
        height: Tokens.hairlineWidth
        objectName: "footerRule"
    }
    Item {
        id: line

        anchors.left: parent.left
        anchors.leftMargin: Tokens.popoverPadding
        anchors.right: parent.right
        // Aligns the gear, not the button around it, with the content above.
        anchors.rightMargin: Tokens.popoverPadding - (settings.width - footer.gearSize) / 2
        anchors.top: rule.bottom
        height: Tokens.footerHeight

        Paragraph {
            anchors.left: parent.left
            anchors.right: settings.left
            anchors.verticalCenter: parent.verticalCenter
            color: Tokens.labelTertiary
            elide: Text.ElideRight
            font: Tokens.metadata
            objectName: "armedChannel"
            text: footer.popover.armedChannelLabel
            wrapMode: Text.NoWrap
        }
        PopoverButton {
            id: settings

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            height: Tokens.smallButtonHeight
            hoverEnabled: true
            objectName: "settingsButton"
            text: "Settings"
            width: height

            background: RoundedRectangle {
                border.color: Tokens.controlBorder
                border.width: Tokens.controlBorderWidth
                color: settings.down ? Tokens.highlightPressed : settings.hovered ? Tokens.highlight : "transparent"
                radius: Tokens.highlightRadius

                FocusRing {
                    innerRadius: parent.radius
                    visible: settings.visualFocus
                }
            }
            contentItem: Item {
                GearSymbol {
                    color: Tokens.labelTertiary
                    height: footer.gearSize
                    objectName: "gear"
                    width: footer.gearSize
                    x: (parent.width - width) / 2
                    y: (parent.height - height) / 2
                }
            }

            onClicked: footer.popover.openSettings()
        }
    }
}
