import QtQuick
import KestrinDesignSystem

// A small window that says one thing, to those who see no standard error.
Window {
    id: root

    required property string text

    width: 460
    height: column.implicitHeight + 2 * column.y
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height
    visible: true
    title: Application.displayName
    color: KestrinColors.warmIvory

    Column {
        id: column

        x: 24
        y: 24
        width: root.width - 2 * x
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
