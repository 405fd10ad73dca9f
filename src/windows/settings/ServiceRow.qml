import QtQuick
import Kelvo

/// A row of the services list. For the keyboard and for a screen reader it is one check box that can be moved up and down.
/// It can be dragged by its grip and by its name.
ToggleRow {
    id: row

    required property int index
    /// The raw value of the service's id.
    required property string service
    required property string name
    required property bool isPrimary
    /// Whether a click has an effect. It has none on the only watched service.
    required property bool canToggle
    /// Whether the row is dragged and follows the pointer.
    property bool isLifted: false

    readonly property bool isPressed: canToggle && (containsPress || nameArea.containsPress && !nameArea.isDragging)
    readonly property bool isLit: hovered && !dragHandle.containsMouse && canToggle

    signal dragBegan(point at)
    signal dragMoved(point at)
    signal dropped
    signal dragCanceled

    // The accessible interface of a Qt check box has no text value, so the state is part of the description.
    Accessible.description: isOn ? "watched" : "not watched"
    implicitHeight: ground.implicitHeight
    title: isPrimary ? name + ", primary" : name

    CardRow {
        id: ground

        anchors.fill: parent
        down: row.isPressed
        focused: row.visualFocus
        // The list draws the rules, which stay in place while a row is dragged.
        hasRule: false
        hovered: row.isLit
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
            RoundedRectangle {
                anchors.fill: parent
                color: Tokens.hairline
                radius: Tokens.rowRadius + Tokens.hairlineWidth
            }
            RoundedRectangle {
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

            onDragBegan: at => row.dragBegan(at)
            onDragCanceled: row.dragCanceled()
            onDragMoved: at => row.dragMoved(at)
            onDropped: row.dropped()
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
            width: Math.min(implicitWidth, row.width - dragHandle.width - checkbox.width - 28 - (primary.visible ? primary.width + primary.anchors.leftMargin : 0))
        }
        CapsTag {
            id: primary

            anchors.baseline: nameText.baseline
            anchors.left: nameText.right
            anchors.leftMargin: 8
            color: Tokens.link
            objectName: "primaryTag"
            title: "Primary"
            visible: row.isPrimary
        }
        DragArea {
            id: nameArea

            anchors.bottom: parent.bottom
            anchors.left: nameText.left
            anchors.right: nameText.right
            anchors.top: parent.top
            cursorShape: isDragging ? Qt.ClosedHandCursor : Qt.ArrowCursor
            objectName: "nameArea"

            onDragBegan: at => row.dragBegan(at)
            onDragCanceled: row.dragCanceled()
            onDragMoved: at => row.dragMoved(at)
            onDropped: row.dropped()
            onPressed: row.focusByMouse()
            onTapped: row.toggle()
        }
        Checkbox {
            id: checkbox

            anchors.right: parent.right
            anchors.rightMargin: Tokens.rowPadding
            anchors.verticalCenter: parent.verticalCenter
            isHovered: row.isLit
            isOn: row.isOn
            isPressed: row.isPressed
            objectName: "box"
        }
    }
}
