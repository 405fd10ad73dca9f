pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// The content of the settings window: all sections.
Column {
    id: content

    required property SettingsState settings

    readonly property alias services: serviceList

    bottomPadding: Tokens.windowPadding
    leftPadding: Tokens.windowPadding
    rightPadding: Tokens.windowPadding
    spacing: Tokens.sectionSpacing
    topPadding: Tokens.windowPadding

    component Section: Column {
        objectName: "section"
        spacing: 8
        width: content.width - content.leftPadding - content.rightPadding
    }

    Section {
        Item {
            implicitHeight: Math.max(servicesHeading.implicitHeight, hint.height)
            width: parent.width

            SectionCaps {
                id: servicesHeading

                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                objectName: "servicesHeading"
                title: "Services · drag to order"
                width: Math.min(implicitWidth, hint.x - 8)
            }
            Row {
                id: hint

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                objectName: "hint"
                spacing: 5

                LineSymbol {
                    anchors.verticalCenter: parent.verticalCenter
                    color: Tokens.labelTertiary
                    height: 12
                    lineWidth: 1.1
                    objectName: "infoSymbol"
                    shape: LineSymbol.Info
                    width: 12
                }
                Paragraph {
                    color: Tokens.labelTertiary
                    font: Tokens.footnote
                    text: "Top one is shown first"
                }
            }
        }
        Card {
            objectName: "servicesCard"
            width: parent.width
            z: 1

            ServiceList {
                id: serviceList

                objectName: "services"
                settings: content.settings
                width: parent.width
            }
        }
    }
    Section {
        SectionCaps {
            objectName: "intervalHeading"
            title: "Check every"
            width: parent.width
        }
        SegmentedChoice {
            anchors.left: parent.left
            current: content.settings.checkInterval
            objectName: "interval"
            titles: content.settings.checkIntervals

            onChosen: index => content.settings.checkInterval = index
        }
    }
    Section {
        SectionCaps {
            objectName: "watchingHeading"
            title: "Watching"
            width: parent.width
        }
        Card {
            width: parent.width

            SwitchRow {
                isOn: content.settings.watchOnThisMac
                objectName: "watchOnThisMac"
                subtitle: "Checks run while your Mac is awake."
                title: "On this Mac"
                width: parent.width

                onFlipped: on => content.settings.watchOnThisMac = on
            }
            SwitchRow {
                enabled: false
                isOn: false
                objectName: "watchAway"
                subtitle: "Kelvo keeps watching when your Mac sleeps, and messages you. Arriving in a later version."
                title: "Away from your Mac"
                width: parent.width
            }
        }
    }
    Section {
        SectionCaps {
            objectName: "channelsHeading"
            title: "Tell me where"
            width: parent.width
        }
        Card {
            id: channels

            objectName: "channelsCard"
            width: parent.width

            Repeater {
                model: content.settings.channels

                ChannelRow {
                    required property string channel
                    required property bool isSelectable

                    enabled: isSelectable
                    objectName: "channel-" + channel
                    width: channels.width

                    onClicked: content.settings.tapChannel(channel)
                }
            }
        }
        Paragraph {
            bottomPadding: 2
            color: Tokens.labelTertiary
            font: Tokens.footnote
            objectName: "channelsFootnote"
            text: "One channel is armed at a time, so a recovery never arrives four ways."
            width: parent.width
        }
        Card {
            width: parent.width

            SwitchRow {
                isOn: content.settings.outageAlertsEnabled
                objectName: "outageAlerts"
                subtitle: "Also tell me when a service goes down."
                title: "Outage alerts"
                width: parent.width

                onFlipped: on => content.settings.outageAlertsEnabled = on
            }
        }
    }
    Section {
        Card {
            width: parent.width

            SwitchRow {
                isOn: content.settings.launchAtLogin
                objectName: "launchAtLogin"
                subtitle: "Kelvo is in your menu bar when you start up."
                title: "Launch at login"
                width: parent.width

                onFlipped: on => content.settings.launchAtLogin = on
            }
        }
        QuietButton {
            anchors.left: parent.left
            color: Tokens.link
            objectName: "showOnboarding"
            title: "Show onboarding again"

            onClicked: content.settings.showOnboarding()
        }
    }
}
