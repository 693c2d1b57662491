import QtQuick

// The keys that hold in the whole window.
Item {
    id: root

    required property var sections

    signal chosen(section: int)
    signal logWanted

    Repeater {
        model: root.sections

        Item {
            id: key

            required property int index

            Shortcut {
                sequence: "Ctrl+" + (key.index + 1)
                onActivated: root.chosen(key.index) // qmllint disable unqualified
            }
        }
    }

    Shortcut {
        sequence: "Ctrl+L"
        onActivated: root.logWanted()
    }

    Shortcut {
        sequence: "Ctrl+W"
        onActivated: root.Window.window.close()
    }

    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: Qt.quit()
    }
}
