import QtQuick
import KestrinDesignSystem

// A protected application that is running, and what its definition wants done. Read as one phrase.
Column {
    id: root

    required property int index
    required property string name
    required property string categories
    required property string icon
    required property string action
    required property int tone

    Accessible.role: Accessible.StaticText
    Accessible.name: name + ", " + categories + ", " + action

    KestrinDivider {
        width: parent.width
        visible: root.index > 0
        inset: 34
    }

    MacRow {
        width: parent.width
        padding: 9
        icon: root.icon
        iconColumn: 24
        iconSize: 15
        iconWeight: KestrinWeight.Semibold
        iconColor: KestrinTones.color(root.tone)
        end: KestrinStatusPill {
            title: root.action
            tone: root.tone

            Accessible.ignored: true
        }

        KestrinText {
            width: parent.width
            text: root.name
            size: 13
            weight: KestrinWeight.Semibold
            silent: true
        }

        KestrinText {
            width: parent.width
            text: root.categories
            size: 11
            color: KestrinColors.textSecondary
            silent: true
        }
    }
}
