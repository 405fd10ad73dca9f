import QtQuick
import Kelvo

/// Where alerts go, and the way to the settings.
Item {
    id: footer

    required property PopoverState popover

    implicitHeight: rule.height + line.height

    Rectangle {
        id: rule

        anchors.left: parent.left
        anchors.right: parent.right
        color: Tokens.separator
        height: 1
        objectName: "footerRule"
    }
    Item {
        id: line

        anchors.left: parent.left
        anchors.leftMargin: 18
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.top: rule.bottom
        height: 38

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
        PlainButton {
            id: settings

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            height: 26
            hoverEnabled: true
            objectName: "settingsButton"
            text: "Settings"
            width: 26

            background: Rectangle {
                color: settings.down ? Qt.alpha(Tokens.primary, 0.1) : settings.hovered ? Qt.alpha(Tokens.primary, 0.06) : "transparent"
                radius: 5

                FocusRing {
                    innerRadius: 5
                    visible: settings.visualFocus
                }
            }
            contentItem: Item {
                GearSymbol {
                    anchors.centerIn: parent
                    color: Tokens.labelTertiary
                    height: 14
                    objectName: "gear"
                    width: 14
                }
            }

            onClicked: footer.popover.openSettings()
        }
    }
}
