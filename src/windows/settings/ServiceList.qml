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

    function lift(row: ServiceRow, at: point) {
        lifted = row;
        follow(at);
        grip = pointer.y - row.index * rowHeight;
        row.isFocusedByMouse = true;
        row.forceActiveFocus(Qt.MouseFocusReason);
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
            settings.move(lifted.service, dropPosition);
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
            settings.move(row.service, to);
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
            onToggled: list.settings.toggle(service)

            Connections {
                function onDragBegan(at: point) {
                    list.lift(row, at);
                }
                function onDragCanceled() {
                    list.cancel();
                }
                function onDragMoved(at: point) {
                    if (row.isLifted) {
                        list.follow(at);
                    }
                }
                function onDropped() {
                    list.drop();
                }

                target: row.handle
            }
        }
    }
}
