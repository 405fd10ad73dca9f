import QtQuick
import Kelvo

/// The services to choose the first one from. The keyboard reaches them as one, and the arrow keys select.
ScrollArea {
    id: picker

    required property OnboardingState onboarding

    function selectByKey(step: int) {
        const next = Math.max(0, Math.min(onboarding.selected + step, rows.count - 1));
        onboarding.selected = next;
        rows.itemAt(next).forceActiveFocus(Qt.TabFocusReason);
    }

    contentHeight: card.height
    contentWidth: width
    implicitHeight: card.height

    Keys.onDownPressed: selectByKey(1)
    Keys.onUpPressed: selectByKey(-1)

    Card {
        id: card

        objectName: "choicesCard"
        width: picker.width

        Repeater {
            id: rows

            model: picker.onboarding.choices

            ChoiceRow {
                required property int index
                required property string modelData

                checked: picker.onboarding.selected === index
                focusPolicy: index === Math.max(0, picker.onboarding.selected) ? Qt.StrongFocus : Qt.ClickFocus
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
