pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// The page that asks for the service to show first. The keyboard reaches the choices as one, and the arrow keys select.
Item {
    id: picker

    required property OnboardingState onboarding

    function selectByKey(step: int) {
        const next = Math.max(0, Math.min(onboarding.selected + step, rows.count - 1));
        onboarding.selected = next;
        rows.itemAt(next).forceActiveFocus(Qt.TabFocusReason);
    }

    Text {
        id: heading

        Accessible.name: text
        Accessible.role: Accessible.Heading
        anchors.left: parent.left
        anchors.leftMargin: 32
        anchors.right: parent.right
        anchors.rightMargin: 32
        anchors.top: parent.top
        anchors.topMargin: 9
        color: Tokens.labelPrimary
        font: Tokens.windowTitle
        horizontalAlignment: Text.AlignLeft
        objectName: "heading"
        text: "Which one matters most?"
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }
    Text {
        id: body

        Accessible.name: text
        Accessible.role: Accessible.StaticText
        anchors.left: heading.left
        anchors.right: heading.right
        anchors.top: heading.bottom
        anchors.topMargin: 2
        color: Tokens.labelSecondary
        font: Tokens.bodyText
        horizontalAlignment: Text.AlignLeft
        objectName: "body"
        text: "This is the service Kelvo shows first. You can add more later."
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
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

        Keys.onDownPressed: picker.selectByKey(1)
        Keys.onUpPressed: picker.selectByKey(-1)

        Card {
            id: card

            objectName: "choicesCard"
            width: parent.width

            Repeater {
                id: rows

                model: picker.onboarding.choices

                ChoiceRow {
                    required property int index
                    required property string modelData

                    checked: picker.onboarding.selected === index
                    focusPolicy: activeFocus || index === Math.max(0, picker.onboarding.selected) ? Qt.StrongFocus : Qt.ClickFocus
                    objectName: "choice-" + index
                    text: modelData
                    width: card.width

                    Keys.onEnterPressed: picker.onboarding.selected = index
                    Keys.onReturnPressed: picker.onboarding.selected = index
                    onToggled: picker.onboarding.selected = index
                }
            }
        }
    }
}
