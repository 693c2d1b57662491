import QtQuick
import KestrinDesignSystem

// A protected application that is running, and what its definition wants done. Read as one phrase.
MacRow {
    id: root

    required property int index
    required subtitle
    required tone
    required property string status

    divided: index > 0
    inset: 34
    padding: 9
    iconColumn: 24
    iconSize: 15
    titleSize: 13
    end: KestrinStatusPill {
        title: root.status
        tone: root.tone

        Accessible.ignored: true
    }

    Accessible.role: Accessible.StaticText
    Accessible.name: title + ", " + subtitle + ", " + status
}
