import QtQuick

// The keys that hold in the whole window.
Item {
    id: root

    required property var sections

    signal chosen(section: int)

    Repeater {
        model: root.sections

        Item {
            id: key

            required property int section

            Shortcut {
                sequence: "Ctrl+" + (key.section + 1)
                onActivated: root.chosen(key.section) // qmllint disable unqualified
            }
        }
    }

    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: Qt.quit()
    }
}
