import QtQuick
import KestrinDesignSystem

// A titled card of rows, which fill its width.
KestrinCard {
    id: root

    required property string title

    spacing: 12

    MacLine {
        text: root.title
    }
}
