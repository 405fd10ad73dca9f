pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// The page on which the user chooses the primary service.
ChoiceGroup {
    id: picker

    required property OnboardingState onboarding

    current: onboarding.selected
    options: rows

    onChosen: index => onboarding.selected = index

    Paragraph {
        id: heading

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
        text: "Which one matters most?"
    }
    Paragraph {
        id: body

        anchors.left: heading.left
        anchors.right: heading.right
        anchors.top: heading.bottom
        anchors.topMargin: 2
        color: Tokens.labelSecondary
        font: Tokens.bodyText
        objectName: "body"
        text: "This is the service Kelvo shows first. You can add more later."
    }
    ScrollArea {
        anchors.left: heading.left
        anchors.right: heading.right
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

                model: picker.onboarding.choices

                ChoiceRow {
                    group: picker
                    objectName: "choice-" + index
                    width: card.width
                }
            }
        }
    }
}
