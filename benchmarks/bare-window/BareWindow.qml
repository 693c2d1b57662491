import QtQuick

// As large as Kestrin's window, and drawn anew as a whole on every key and every turn of the wheel.
Window {
    width: 1180
    height: 760
    visible: true

    Rectangle {
        id: all

        property bool turned: false

        anchors.fill: parent
        color: turned ? "ivory" : "white"
        focus: true

        Keys.onPressed: event => {
            if (event.key !== Qt.Key_Control)
                turned = !turned;
        }

        WheelHandler {
            onWheel: all.turned = !all.turned
        }
    }
}
