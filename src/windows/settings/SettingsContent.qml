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

    // A screen reader tells the name of the group instead.
    component Heading: SectionCaps {
        Accessible.role: Accessible.Heading
    }
    component Footnote: Prose {
        color: Tokens.labelSecondary
        font: Tokens.footnote
        width: parent.width
    }

    Section {
        Accessible.name: servicesHeading.title
        Accessible.role: Accessible.Grouping

        Item {
            implicitHeight: Math.max(servicesHeading.implicitHeight, hint.height)
            width: parent.width

            Heading {
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
                    color: Tokens.labelSecondary
                    height: 12
                    lineWidth: 1.1
                    objectName: "infoSymbol"
                    shape: LineSymbol.Info
                    width: 12
                }
                Paragraph {
                    color: Tokens.labelSecondary
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
        Footnote {
            objectName: "reorderingKeys"
            words: "Drag a service, or press " + (Qt.platform.os === "osx" ? "Option" : "Alt") + " and an arrow key, to move it."
        }
    }
    Section {
        Heading {
            objectName: "intervalHeading"
            title: "Check every"
            width: parent.width
        }
        SegmentedChoice {
            anchors.left: parent.left
            current: content.settings.checkInterval
            objectName: "interval"
            title: "Check every"
            titles: content.settings.checkIntervals

            onChosen: index => content.settings.checkInterval = index
        }
    }
    Section {
        Accessible.name: watchingHeading.title
        Accessible.role: Accessible.Grouping

        Heading {
            id: watchingHeading

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

                onToggled: content.settings.watchOnThisMac = !isOn
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
        Accessible.name: channelsHeading.title
        Accessible.role: Accessible.Grouping

        Heading {
            id: channelsHeading

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
        Footnote {
            bottomPadding: 2
            objectName: "channelsFootnote"
            words: "One channel is armed at a time, so a recovery never arrives four ways."
        }
        Card {
            width: parent.width

            SwitchRow {
                isOn: content.settings.outageAlertsEnabled
                objectName: "outageAlerts"
                subtitle: "Also tell me when a service goes down."
                title: "Outage alerts"
                width: parent.width

                onToggled: content.settings.outageAlertsEnabled = !isOn
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

                onToggled: content.settings.launchAtLogin = !isOn
            }
        }
        Item {
            implicitHeight: showOnboarding.implicitContentHeight
            width: parent.width

            QuietButton {
                id: showOnboarding

                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                color: Tokens.link
                objectName: "showOnboarding"
                title: "Show onboarding again"

                onClicked: content.settings.showOnboarding()
            }
        }
    }
}
