pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// All services in the user's order. Dragging, or Alt with the arrow keys, changes the order.
Item {
    id: list

    required property SettingsState settings

    readonly property real rowHeight: Tokens.rowHeight
    readonly property bool isDragging: lifted !== null
    /// The dragged row; null when no row is dragged.
    property ServiceRow lifted: null
    /// The index at which the dragged row would be dropped; -1 when no row is dragged.
    readonly property int dropPosition: {
        if (!isDragging) {
            return -1;
        }
        if (pointer.x < -rowHeight || pointer.x > width + rowHeight || pointer.y < -rowHeight || pointer.y > height + rowHeight) {
            return lifted.index;
        }
        return Math.max(0, Math.min(Math.floor((liftedY + rowHeight / 2) / rowHeight), rows.count - 1));
    }

    property point pointer
    property point pointerInWindow
    property real grip: 0
    readonly property real liftedY: pointer.y - grip

    /// A service has moved. `text` tells a screen reader where it is now.
    signal announced(string text)

    function lift(row: ServiceRow, at: point) {
        lifted = row;
        follow(at);
        grip = pointer.y - row.index * rowHeight;
        row.focusByMouse();
    }
    function follow(at: point) {
        pointerInWindow = at;
        pointer = mapFromItem(null, at.x, at.y);
    }
    /// Called when the list has scrolled during a drag.
    function followScrolling() {
        follow(pointerInWindow);
    }
    function drop() {
        if (isDragging) {
            move(lifted, dropPosition);
            lifted = null;
        }
    }
    function cancel() {
        lifted = null;
    }
    /// The position of a row while another one is dragged. Rows move to make room for it.
    function shownPosition(index: int): int {
        if (!isDragging || index === lifted.index) {
            return index;
        }
        if (index > lifted.index) {
            return index <= dropPosition ? index - 1 : index;
        }
        return index >= dropPosition ? index + 1 : index;
    }
    function focusRow(index: int) {
        const row = rows.itemAt(Math.max(0, Math.min(index, rows.count - 1)));
        row.forceActiveFocus(Qt.TabFocusReason);
    }
    function moveByKey(row: ServiceRow, to: int) {
        if (to >= 0 && to < rows.count) {
            move(row, to);
        }
    }
    function move(row: ServiceRow, to: int) {
        if (to !== row.index) {
            settings.move(row.service, to);
            announced(row.name + ", " + (row.index + 1) + " of " + rows.count);
        }
    }

    implicitHeight: rows.count * rowHeight

    Repeater {
        model: rows.count

        CardRowRule {
            required property int index

            visible: index > 0
            y: index * list.rowHeight
        }
    }
    Repeater {
        id: rows

        model: list.settings.services

        ServiceRow {
            id: row

            height: list.rowHeight
            isLifted: list.lifted === row
            objectName: "service-" + service
            width: list.width
            y: isLifted ? list.liftedY : list.shownPosition(index) * list.rowHeight
            z: isLifted ? 1 : 0

            Behavior on y {
                enabled: !row.isLifted && !Tokens.reduceMotion

                NumberAnimation {
                    duration: Tokens.rowMove.duration
                    easing: Tokens.rowMove.curve
                }
            }

            Keys.onDownPressed: event => event.modifiers & Qt.AltModifier ? list.moveByKey(row, index + 1) : list.focusRow(index + 1)
            Keys.onUpPressed: event => event.modifiers & Qt.AltModifier ? list.moveByKey(row, index - 1) : list.focusRow(index - 1)
            onDragBegan: at => list.lift(row, at)
            onDragCanceled: list.cancel()
            onDragMoved: at => {
                if (isLifted) {
                    list.follow(at);
                }
            }
            onDropped: list.drop()
            onToggled: list.settings.toggle(service)
        }
    }
}
