import QtQuick
import KestrinDesignSystem

// A small window that says one thing, to those who see no standard error.
Window {
    id: root

    required property string text

    // Not the window's own, which follow one another from Qt 6.8 on.
    readonly property real wholeWidth: 460
    readonly property real wholeHeight: column.implicitHeight + 2 * column.y

    width: wholeWidth
    height: wholeHeight
    minimumWidth: wholeWidth
    maximumWidth: wholeWidth
    minimumHeight: wholeHeight
    maximumHeight: wholeHeight
    visible: true
    title: Application.displayName
    color: KestrinColors.warmIvory

    Column {
        id: column

        x: 24
        y: 24
        width: root.wholeWidth - 2 * x
        spacing: 20

        KestrinText {
            width: parent.width
            text: root.text
            size: 14
        }

        KestrinPrimaryButton {
            width: parent.width
            title: "Close"
            focus: true
            onClicked: root.close()
        }
    }
}
