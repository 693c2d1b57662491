import QtQuick
import QtQuick.Layouts
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection

    title: "Schedule"
    subtitle: "Turn Privacy Mode on and off automatically for different situations."

    GridLayout {
        Layout.fillWidth: true
        columns: 2
        columnSpacing: 12
        rowSpacing: 12

        Repeater {
            model: root.protection.presets

            MacScheduleCard {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                onFlipped: on => root.protection.setPreset(identifier, on)
            }
        }
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 8

        KestrinStatusPill {
            title: root.protection.enabledScheduleCount + " enabled"
            tone: root.protection.enabledScheduleCount < 1 ? KestrinTone.Attention : KestrinTone.Protected
        }

        KestrinText {
            Layout.fillWidth: true
            text: "Enabled schedules apply while the Mac app is running. Sleep, Away, and Focus can turn Privacy Mode on or off at their saved times."
            size: 12
            weight: KestrinWeight.Medium
            color: KestrinColors.textSecondary
            horizontalAlignment: Text.AlignRight
        }
    }
}
