import QtQuick
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection

    title: "Schedule"
    subtitle: "Turn Privacy Mode on and off automatically for different situations."

    Grid {
        width: parent.width
        columns: 2
        spacing: 12
        verticalItemAlignment: Grid.AlignVCenter

        Repeater {
            model: root.protection.presets

            MacScheduleCard {
                id: card

                // Whole pixels; the right one takes what is left.
                width: card.index % 2 === 0 ? Math.floor((parent.width - 12) / 2) : Math.ceil((parent.width - 12) / 2)
                onFlipped: on => root.protection.setPreset(card.identifier, on) // qmllint disable unqualified
            }
        }
    }

    Item {
        width: parent.width
        implicitHeight: Math.max(pill.implicitHeight, note.implicitHeight)

        KestrinStatusPill {
            id: pill

            anchors.verticalCenter: parent.verticalCenter
            title: root.protection.enabledScheduleCount + " enabled"
            tone: root.protection.enabledScheduleCount < 1 ? KestrinTone.Attention : KestrinTone.Protected
        }

        KestrinText {
            id: note

            anchors.left: pill.right
            anchors.leftMargin: 16
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: "Enabled schedules apply while the Mac app is running. Sleep, Away, and Focus can turn Privacy Mode on or off at their saved times."
            size: 12
            weight: KestrinWeight.Medium
            color: KestrinColors.textSecondary
            horizontalAlignment: Text.AlignRight
        }
    }
}
