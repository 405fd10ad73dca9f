pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// The page on which the user chooses the primary service. The arrow keys choose, wherever the focus is.
OnboardingPage {
    id: page

    required property OnboardingState onboarding

    /// How far the list reaches into the bar, above the buttons.
    readonly property real overlap: 6

    contentHeight: list.y + card.height - overlap
    heading: "Which one matters most?"
    isMainEnabled: onboarding.hasSelection

    Keys.onDownPressed: choice.chooseByKey(1)
    Keys.onUpPressed: choice.chooseByKey(-1)

    ChoiceGroup {
        id: choice

        anchors.fill: parent
        anchors.bottomMargin: -page.overlap
        current: page.onboarding.selected
        options: rows
        title: page.heading

        onChosen: index => page.onboarding.selected = index
        onConfirmed: page.mainClicked(true)

        Paragraph {
            id: headingText

            Accessible.role: Accessible.Heading
            anchors.left: parent.left
            anchors.leftMargin: Tokens.pagePadding
            anchors.right: parent.right
            anchors.rightMargin: Tokens.pagePadding
            anchors.top: parent.top
            anchors.topMargin: 9
            color: Tokens.labelPrimary
            font: Tokens.windowTitle
            objectName: "heading"
            text: page.heading
        }
        Prose {
            id: body

            anchors.left: headingText.left
            anchors.right: headingText.right
            anchors.top: headingText.bottom
            anchors.topMargin: 2
            color: Tokens.labelSecondary
            font: Tokens.bodyText
            objectName: "body"
            words: "This is the service Kelvo shows first. You can add more later."
        }
        ScrollArea {
            id: list

            anchors.left: headingText.left
            anchors.right: headingText.right
            anchors.top: body.bottom
            anchors.topMargin: 8
            contentHeight: card.height
            contentWidth: width
            height: Math.min(card.height, parent.height - y)
            objectName: "choices"

            Card {
                id: card

                objectName: "choicesCard"
                width: parent.width

                Repeater {
                    id: rows

                    model: page.onboarding.choices

                    ChoiceRow {
                        group: choice
                        objectName: "choice-" + index
                        width: card.width
                    }
                }
            }
        }
    }
}
