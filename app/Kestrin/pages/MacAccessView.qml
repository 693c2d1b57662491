import QtQuick
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection

    signal chosen(section: int)

    title: "Access"
    subtitle: "Review what Kestrin can see and do on this computer."

    Row {
        width: parent.width
        spacing: 16

        SettingsColumn {
            width: Math.floor((parent.width - parent.spacing) / 2)
            title: "Setup Access"

            MacSettingRow {
                title: "Account"
                detail: "Not required"
                icon: "person.crop.circle"
                tone: KestrinTone.Protected
            }

            MacSettingRow {
                title: "Selected Mac apps"
                detail: root.protection.selectedCount + " apps"
                icon: "checklist"
                tone: KestrinTone.Protected
                leads: true
                onClicked: root.chosen(MacSection.Apps)
            }

            MacSettingRow {
                title: "Schedules"
                detail: root.protection.enabledScheduleCount + " enabled"
                icon: "calendar"
                tone: root.protection.enabledScheduleCount < 1 ? KestrinTone.Attention : KestrinTone.Protected
                leads: true
                onClicked: root.chosen(MacSection.Schedule)
            }

            MacSettingRow {
                title: "Activity log"
                detail: "Saved locally"
                icon: "list.bullet.rectangle"
                tone: KestrinTone.Link
                leads: true
                onClicked: root.chosen(MacSection.Activity)
            }

            MacSettingRow {
                title: "Privacy guide"
                detail: "View"
                icon: "book.closed.fill"
                tone: KestrinTone.Neutral
                leads: true
                onClicked: Qt.openUrlExternally(MacConfiguration.privacyURL)
            }

            MacSettingRow {
                title: "Help"
                detail: "Contact"
                icon: "questionmark.circle.fill"
                tone: KestrinTone.Neutral
                leads: true
                onClicked: Qt.openUrlExternally(MacConfiguration.supportURL)
            }
        }

        SettingsColumn {
            width: parent.width - x
            title: "Mac Access"

            MacSettingRow {
                title: "Mac app actions"
                detail: root.protection.actionsLabel
                icon: "hand.raised.fill"
                tone: root.protection.enforceActions ? KestrinTone.Risk : KestrinTone.Link
            }

            MacSettingRow {
                title: "Relaunch monitor"
                detail: root.protection.monitorLabel
                icon: "arrow.clockwise.circle.fill"
                tone: KestrinTone.Link
            }

            MacSettingRow {
                title: "Running apps scanned"
                detail: root.protection.runningAppCount
                icon: "macwindow"
                tone: KestrinTone.Neutral
            }

            MacSettingRow {
                title: "Protected app matches"
                detail: root.protection.matchCount
                icon: "scope"
                tone: root.protection.matchCount > 0 ? KestrinTone.Attention : KestrinTone.Protected
            }

            MacSettingRow {
                title: "iPhone connection"
                detail: "Use mobile app"
                icon: "iphone"
                tone: KestrinTone.Link
                leads: true
                onClicked: root.chosen(MacSection.Connect)
            }

            KestrinToggle {
                width: parent.width
                on: root.protection.enforceActions
                onFlipped: on => root.protection.enforceActions = on

                Accessible.name: "Keep selected apps closed"
                Accessible.description: explanation.text

                Column {
                    width: parent.width
                    spacing: 3

                    KestrinText {
                        width: parent.width
                        text: "Keep selected apps closed"
                        size: 14
                        weight: KestrinWeight.Semibold
                        silent: true
                    }

                    KestrinText {
                        id: explanation

                        width: parent.width
                        text: "When enabled, Kestrin sends quit requests to selected Mac protected apps while Privacy Mode is on."
                        size: 12
                        color: KestrinColors.textSecondary
                        silent: true
                    }
                }
            }
        }
    }
}
