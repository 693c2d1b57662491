import QtQuick
import KestrinDesignSystem

// An event of the activity log. Read as one phrase.
Column {
    id: root

    required property int index
    required property string title
    required property string message
    required property string time
    required property string icon
    required property int tone

    Accessible.role: Accessible.StaticText
    Accessible.name: time + ", " + title + ", " + message

    KestrinDivider {
        width: parent.width
        visible: root.index > 0
        inset: 40
    }

    MacRow {
        width: parent.width
        padding: 10
        icon: root.icon
        iconColumn: 26
        iconSize: 16
        iconWeight: KestrinWeight.Semibold
        iconColor: KestrinTones.color(root.tone)
        end: KestrinText {
            text: root.time
            size: 12
            weight: KestrinWeight.Semibold
            color: KestrinColors.textSecondary
            silent: true
        }

        KestrinText {
            width: parent.width
            text: root.title
            size: 14
            weight: KestrinWeight.Semibold
            silent: true
        }

        KestrinText {
            width: parent.width
            text: root.message
            size: 12
            color: KestrinColors.textSecondary
            lineLimit: 2
            silent: true
        }
    }
}
