import QtQuick
import KestrinDesignSystem

// A titled card of rows, which fill its width.
KestrinCard {
    id: root

    required property string title

    spacing: 12

    KestrinText {
        width: parent.width
        text: root.title
        size: 17
        weight: KestrinWeight.Bold
        heading: true
    }
}
