import QtQuick
import Kestrin
import KestrinDesignSystem

// What closing the window is to do from now on, asked once. A window of its own, because the other one is closed already:
// a desktop that closes everything at the end of a session does not wait for an answer. Closed without one it leaves
// everything as it is.
Window {
    id: root

    required property TrayCommands commands

    // Not the window's own, which follow one another from Qt 6.8 on.
    readonly property real wholeWidth: 520
    readonly property real wholeHeight: content.implicitHeight + 2 * content.margin

    width: wholeWidth
    height: wholeHeight
    minimumWidth: wholeWidth
    maximumWidth: wholeWidth
    minimumHeight: wholeHeight
    maximumHeight: wholeHeight
    visible: true
    title: question.text
    color: KestrinColors.warmIvory

    FocusScope {
        id: content

        readonly property real margin: 24

        x: margin
        y: margin
        width: root.wholeWidth - 2 * margin
        implicitHeight: column.implicitHeight
        focus: true

        Accessible.role: Accessible.Dialog
        Accessible.name: question.text

        Keys.onEscapePressed: root.close()

        Column {
            id: column

            width: parent.width
            spacing: 10

            KestrinText {
                id: question

                width: parent.width
                text: "Keep protecting?"
                size: 22
                weight: KestrinWeight.Bold
                heading: true
            }

            KestrinText {
                width: parent.width
                text: "Kestrin is still running, and its icon is in the tray. Is it to go on like this whenever you close "
                    + "the window, or to end? The icon's menu lets you change that later."
                size: 14
            }

            Item {
                width: 1
                height: 6
            }

            Row {
                width: parent.width
                spacing: 12

                KestrinSecondaryButton {
                    anchors.verticalCenter: parent.verticalCenter
                    width: (parent.width - parent.spacing) / 2
                    title: "Quit Kestrin"
                    onClicked: {
                        root.commands.staysWhenClosed = false;
                        root.commands.quit();
                    }
                }

                KestrinPrimaryButton {
                    width: (parent.width - parent.spacing) / 2
                    title: "Keep Protecting"
                    focus: true
                    onClicked: {
                        root.commands.staysWhenClosed = true;
                        root.close();
                    }
                }
            }
        }
    }

    Shortcut {
        sequence: "Ctrl+W"
        onActivated: root.close()
    }

    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: Qt.quit()
    }
}
