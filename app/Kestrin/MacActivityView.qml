import QtQuick
import QtQuick.Layouts
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection

    title: "Activity"
    subtitle: "Review what Kestrin protected for you."

    KestrinCard {
        Layout.fillWidth: true

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 14

            KestrinText {
                Layout.fillWidth: true
                text: "Today’s protection summary"
                size: 17
                weight: KestrinWeight.Bold
                heading: true
            }

            RowLayout {
                Layout.fillWidth: true
                spacing: 10

                KestrinMetricTile {
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    title: "Selected apps"
                    value: root.protection.selectedCount
                    tone: KestrinTone.Protected
                    systemImage: "lock.fill"
                }

                KestrinMetricTile {
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    title: "Protected app matches"
                    value: root.protection.matchCount
                    tone: root.protection.matchCount > 0 ? KestrinTone.Attention : KestrinTone.Protected
                    systemImage: "exclamationmark.shield.fill"
                }

                KestrinMetricTile {
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    title: "Mac actions"
                    value: root.protection.actionEventCount
                    tone: root.protection.actionEventCount > 0 ? KestrinTone.Link : KestrinTone.Neutral
                    systemImage: "clock.fill"
                }
            }
        }
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 10

        RowLayout {
            Layout.fillWidth: true
            spacing: 8

            KestrinText {
                Layout.fillWidth: true
                text: "Live engine events"
                size: 17
                weight: KestrinWeight.Bold
                heading: true
            }

            KestrinStatusPill {
                title: root.protection.monitorLabel
                tone: root.protection.enforceActions ? KestrinTone.Risk : KestrinTone.Link
            }
        }

        KestrinCard {
            Layout.fillWidth: true

            RowLayout {
                Layout.fillWidth: true
                visible: root.protection.events.count === 0
                spacing: 10

                KestrinSymbol {
                    name: "tray"
                    color: KestrinColors.textSecondary
                }

                KestrinText {
                    Layout.fillWidth: true
                    text: "No Mac engine events yet. Run a Mac Check or change Privacy Mode to create activity."
                    size: 13
                    weight: KestrinWeight.Semibold
                    color: KestrinColors.textSecondary
                }
            }

            Repeater {
                model: root.protection.events

                MacEngineEventRow {
                    Layout.fillWidth: true
                    last: index === root.protection.events.count - 1
                }
            }
        }
    }
}
