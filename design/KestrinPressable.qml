import QtQuick
import KestrinDesignSystem

// A plain button without a look of its own: whatever is put into it acts on a click, on Space or Return, and by
// assistive technology. Give it an `Accessible.name`. The mouse does not take the keyboard's place; the focus
// ring therefore shows only to those who use the keyboard.
Item {
    id: root

    readonly property bool pressed: pointer.containsPress || spaceHeld
    property bool spaceHeld: false

    signal clicked

    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.focusable: true
    Accessible.pressed: pressed
    Accessible.onPressAction: clicked()

    onActiveFocusChanged: spaceHeld = false

    Keys.onSpacePressed: event => spaceHeld = spaceHeld || !event.isAutoRepeat
    Keys.onReleased: event => {
        if (event.key === Qt.Key_Space && !event.isAutoRepeat && spaceHeld) {
            spaceHeld = false;
            event.accepted = true;
            clicked();
        }
    }
    Keys.onReturnPressed: event => event.isAutoRepeat || clicked()
    Keys.onEnterPressed: event => event.isAutoRepeat || clicked()

    MouseArea {
        id: pointer

        anchors.fill: parent
        onClicked: root.clicked()
    }
}
