import QtQuick

/// Lets a screen reader speak a text that no element with the focus tells, such as the effect of a button. It draws
/// nothing.
// On the accessibility bus of Linux, a notification that appears is spoken in full. A name that changes is not, because Qt
// does not send the new name with the event.
Item {
    id: announcer

    function announce(text: string) {
        visible = false;
        Accessible.name = text;
        visible = true;
    }

    Accessible.role: Accessible.Notification
    height: 1
    visible: false
    width: 1
}
