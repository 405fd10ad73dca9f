import QtQuick
import QtQuick.Templates as T
import Kelvo

/// Scrolls content that is higher than the area: with the wheel, by touch, with the scroll bar, and to the item with the
/// keyboard focus. Dragging with the mouse does not scroll, because it moves items of the content.
Flickable {
    id: area

    readonly property real lowest: Math.max(0, contentHeight - height)
    readonly property Item focused: Window.activeFocusItem

    function scrollBy(distance: real) {
        contentY = Math.max(0, Math.min(contentY + distance, lowest));
    }
    function reveal(item: Item) {
        const margin = 12;
        const top = item.mapToItem(contentItem, 0, 0).y;
        if (top - margin < contentY) {
            scrollBy(top - margin - contentY);
        } else if (top + item.height + margin > contentY + height) {
            scrollBy(top + item.height + margin - contentY - height);
        }
    }
    function holds(item: Item): bool {
        for (let ancestor = item; ancestor; ancestor = ancestor.parent) {
            if (ancestor === contentItem) {
                return true;
            }
        }
        return false;
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    interactive: false

    T.ScrollBar.vertical: T.ScrollBar {
        id: bar

        anchors.right: parent?.right
        implicitWidth: 10
        minimumSize: 0.1
        padding: 2
        policy: area.lowest > 0 ? T.ScrollBar.AlwaysOn : T.ScrollBar.AlwaysOff
        visible: policy === T.ScrollBar.AlwaysOn

        contentItem: RoundedRectangle {
            color: bar.pressed ? Tokens.scrollThumbPressed : bar.hovered ? Tokens.scrollThumbHovered : Tokens.scrollThumb
            implicitWidth: 6
            objectName: "scrollThumb"
            radius: implicitWidth / 2
        }
    }

    Keys.onPressed: event => {
        if (event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp) {
            scrollBy((event.key === Qt.Key_PageDown ? 0.9 : -0.9) * height);
            event.accepted = true;
        }
    }
    onFocusedChanged: {
        if (focused && holds(focused)) {
            reveal(focused);
        }
    }
    onLowestChanged: scrollBy(0)

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        target: null

        onWheel: event => area.scrollBy(event.pixelDelta.y !== 0 ? -event.pixelDelta.y : -event.angleDelta.y / 120 * 54)
    }
    DragHandler {
        property real former: 0

        acceptedDevices: PointerDevice.TouchScreen
        target: null
        xAxis.enabled: false

        onActiveChanged: former = 0
        onActiveTranslationChanged: {
            area.scrollBy(former - activeTranslation.y);
            former = activeTranslation.y;
        }
    }
}
