import QtQuick
import Kelvo

/// The content of the popover: the hero, the other services, and the footer.
FocusScope {
    id: root

    required property PopoverState popover

    /// Whether the content is at its final position. It moves there each time the popover opens.
    property bool risen: false

    function appear() {
        risen = true;
        list.forgetHints();
        hero.forceActiveFocus(Qt.PopupFocusReason);
        if (Tokens.reduceMotion) {
            stack.opacity = 1;
            drop.y = 0;
        } else {
            rise.restart();
        }
    }
    /// Makes a screen reader read the hero. It reads what receives the focus, but the keyboard stays in the list.
    function readHero(byKeyboard: bool) {
        if (byKeyboard || hero.activeFocus) {
            announcer.announce(hero.spokenText);
        } else {
            hero.forceActiveFocus(Qt.MouseFocusReason);
        }
    }
    function disappear() {
        risen = false;
        rise.stop();
        stack.opacity = 0;
        drop.y = rise.distance;
    }

    Accessible.name: "Kelvo"
    Accessible.role: Accessible.Pane
    LayoutMirroring.childrenInherit: true
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    // The height of a window is an integer, but the line height of some fonts is not.
    implicitHeight: Math.ceil(Math.max(Tokens.popoverLeastHeight, list.y + list.height + stack.leastSpace + footer.height))
    implicitWidth: Tokens.popoverWidth

    Keys.onDownPressed: list.focusRow(0)
    Keys.onUpPressed: list.focusRow(list.count - 1)

    Connections {
        function onIsOpenChanged() {
            if (root.popover.isOpen) {
                root.appear();
            } else {
                root.disappear();
            }
        }

        function onAnnounced(text) {
            announcer.announce(text);
        }

        target: root.popover
    }
    Announcer {
        id: announcer

        objectName: "announcer"
    }
    Item {
        id: stack

        /// The space between the last row and the footer.
        readonly property real leastSpace: 14

        anchors.fill: parent
        objectName: "stack"
        opacity: 0

        transform: Translate {
            id: drop

            y: rise.distance
        }

        HeroStatusView {
            id: hero

            anchors.left: parent.left
            anchors.leftMargin: Tokens.popoverPadding
            anchors.right: parent.right
            anchors.rightMargin: Tokens.popoverPadding
            anchors.top: parent.top
            anchors.topMargin: 14
            animated: root.risen && !Tokens.reduceMotion
            objectName: "hero"
            popover: root.popover
        }
        RoundedRectangle {
            id: separator

            anchors.left: hero.left
            anchors.right: hero.right
            anchors.top: hero.bottom
            anchors.topMargin: 13
            color: Tokens.separator
            height: Tokens.hairlineWidth
            objectName: "separator"
        }
        WatchListView {
            id: list

            anchors.left: hero.left
            anchors.right: hero.right
            anchors.top: separator.bottom
            anchors.topMargin: 11
            objectName: "watchList"

            onPeeked: byKeyboard => root.readHero(byKeyboard)

            popover: root.popover
        }
        PopoverFooter {
            id: footer

            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.right: parent.right
            objectName: "footer"
            popover: root.popover
        }
    }
    ParallelAnimation {
        id: rise

        readonly property real distance: 6

        objectName: "rise"

        NumberAnimation {
            duration: Tokens.popoverRise.duration
            easing: Tokens.popoverRise.curve
            from: 0
            property: "opacity"
            target: stack
            to: 1
        }
        NumberAnimation {
            duration: Tokens.popoverRise.duration
            easing: Tokens.popoverRise.curve
            from: rise.distance
            property: "y"
            target: drop
            to: 0
        }
    }
}
