pragma ComponentBehavior: Bound

import QtQuick
import Kelvo

/// The list of the other watched services, with its heading.
Item {
    id: list

    required property PopoverState popover

    readonly property alias count: rows.count
    /// The service whose row had the focus first, or empty. Only that row keeps its hint: the hint is the same for all
    /// rows, and a screen reader would repeat it for each.
    property string hintedService: ""

    /// The user moved a service to the top.
    signal peeked(bool byKeyboard)

    /// Moves the keyboard focus to the row at an index. An index out of range means the first or the last row.
    function focusRow(index: int) {
        const row = rows.itemAt(Math.max(0, Math.min(index, rows.count - 1)));
        if (row) {
            row.forceActiveFocus(Qt.TabFocusReason);
        }
    }
    /// Moves the service of a row to the top. The keyboard focus stays at the same position of the list.
    function peek(index: int, service: string, byKeyboard: bool) {
        popover.peek(service);
        if (byKeyboard) {
            focusRow(index);
        }
        peeked(byKeyboard);
    }
    function forgetHints() {
        hintedService = "";
    }

    implicitHeight: column.y + column.height - column.reach

    SectionCaps {
        id: heading

        anchors.left: parent.left
        anchors.right: parent.right
        objectName: "groupHeading"
        title: list.popover.groupHeading
    }
    Column {
        id: column

        readonly property real reach: 2

        anchors.left: parent.left
        anchors.margins: -6
        anchors.right: parent.right
        anchors.top: heading.bottom
        anchors.topMargin: 8 - reach
        spacing: 6 - 2 * reach

        Repeater {
            id: rows

            model: list.popover.rows

            // Lay out now and not in the next frame, because the window is resized before.
            onCountChanged: column.forceLayout()

            WatchRow {
                id: row

                required property int index
                required property string service

                hasHint: list.hintedService === "" || list.hintedService === service
                objectName: "row-" + service
                width: column.width

                Keys.onDownPressed: list.focusRow(index + 1)
                Keys.onUpPressed: list.focusRow(index - 1)
                onActiveFocusChanged: {
                    if (activeFocus && list.hintedService === "") {
                        list.hintedService = service;
                    }
                }
                onClicked: list.peek(index, service, visualFocus)
            }
        }
    }
}
