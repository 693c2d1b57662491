import QtQuick
import KestrinDesignSystem

// An event of the activity log. Read as one phrase.
MacRow {
    id: root

    required property int index
    required subtitle
    required tone
    required property string status

    divided: index > 0
    inset: 40
    padding: 10
    iconColumn: 26
    iconSize: 16
    subtitleLines: 2
    end: KestrinText {
        text: root.status
        size: 12
        weight: KestrinWeight.Semibold
        color: KestrinColors.textSecondary
        silent: true
    }

    Accessible.role: Accessible.StaticText
    Accessible.name: status + ", " + title + ", " + subtitle
}
