import QtQuick
import Kelvo

/// A row of the services list. For the keyboard and for a screen reader it is one check box that can be moved up and down.
Item {
    id: row

    required property int index
    /// The raw value of the service's id.
    required property string service
    required property string name
    required property bool isPrimary
    required property bool isOn
    /// Whether the row is dragged and follows the pointer.
    property bool isLifted: false

    readonly property alias handle: dragHandle
    /// Whether the row got the focus by mouse. The focus ring is not shown then.
    property bool isFocusedByMouse: false

    signal toggled

    Accessible.checkable: true
    Accessible.checked: isOn
    // The accessible interface of a Qt check box has no text value, so the state is part of the description.
    Accessible.description: isOn ? "watched" : "not watched"
    Accessible.name: isPrimary ? name + ", primary" : name
    Accessible.role: Accessible.CheckBox
    activeFocusOnTab: true
    implicitHeight: ground.implicitHeight

    Accessible.onPressAction: toggled()
    Accessible.onToggleAction: toggled()
    Keys.onEnterPressed: toggled()
    Keys.onReturnPressed: toggled()
    Keys.onSpacePressed: toggled()
    Keys.onPressed: event => {
        isFocusedByMouse = false;
        event.accepted = false;
    }
    onActiveFocusChanged: {
        if (!activeFocus) {
            isFocusedByMouse = false;
        }
    }

    CardRow {
        id: ground

        anchors.fill: parent
        focused: row.activeFocus && !row.isFocusedByMouse
        // The list draws the rules, which stay in place while a row is dragged.
        hasRule: false
        hovered: hover.hovered
        implicitHeight: Tokens.rowHeight

        Item {
            anchors.fill: parent
            visible: row.isLifted
            z: -1

            WindowShadow {
                anchors.fill: parent
                anchors.margins: -blur
                blur: 8
                color: Tokens.liftedShadow
            }
            Rectangle {
                anchors.fill: parent
                color: Tokens.hairline
                radius: Tokens.rowRadius + Tokens.hairlineWidth
            }
            Rectangle {
                anchors.fill: parent
                anchors.margins: Tokens.hairlineWidth
                color: Tokens.card
                objectName: "lifted"
                radius: Tokens.rowRadius
            }
        }
    }
    Item {
        anchors.fill: parent

        DragHandle {
            id: dragHandle

            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.leftMargin: 2
            anchors.top: parent.top
            objectName: "handle"
        }
        Label {
            id: nameText

            anchors.left: dragHandle.right
            anchors.verticalCenter: parent.verticalCenter
            color: Tokens.labelPrimary
            elide: Text.ElideRight
            font: Tokens.row
            objectName: "name"
            text: row.name
            width: Math.min(implicitWidth, row.width - dragHandle.width - checkbox.width - 16 - (primary.visible ? primary.width + primary.anchors.leftMargin : 0))
        }
        CapsTag {
            id: primary

            anchors.left: nameText.right
            anchors.leftMargin: 8
            anchors.verticalCenter: nameText.verticalCenter
            color: Tokens.link
            objectName: "primaryTag"
            title: "Primary"
            visible: row.isPrimary
        }
        Checkbox {
            id: checkbox

            anchors.right: parent.right
            anchors.rightMargin: Tokens.rowPadding - reach
            anchors.verticalCenter: parent.verticalCenter
            isOn: row.isOn
            objectName: "checkbox"

            onClicked: row.toggled()
        }
    }

    HoverHandler {
        id: hover
    }
}
