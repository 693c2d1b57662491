import QtQuick
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection

    title: "Activity"
    subtitle: "Review what Kestrin protected for you."

    KestrinCard {
        width: parent.width
        spacing: 14

        MacLine {
            text: "Today’s protection summary"
        }

        Row {
            width: parent.width
            spacing: 10

            KestrinMetricTile {
                width: Math.floor((parent.width - 2 * parent.spacing) / 3)
                title: "Selected apps"
                value: root.protection.selectedCount
                tone: KestrinTone.Protected
                systemImage: "lock.fill"
            }

            KestrinMetricTile {
                width: Math.floor((parent.width - 2 * parent.spacing) / 3)
                title: "Protected app matches"
                value: root.protection.matchCount
                tone: root.protection.matchCount > 0 ? KestrinTone.Attention : KestrinTone.Protected
                systemImage: "exclamationmark.shield.fill"
            }

            KestrinMetricTile {
                width: parent.width - x
                title: "Mac actions"
                value: root.protection.actionEventCount
                tone: root.protection.actionEventCount > 0 ? KestrinTone.Link : KestrinTone.Neutral
                systemImage: "clock.fill"
            }
        }
    }

    Column {
        width: parent.width
        spacing: 10

        MacLine {
            text: "Live engine events"

            KestrinStatusPill {
                anchors.verticalCenter: parent.verticalCenter
                title: root.protection.monitorLabel
                tone: root.protection.enforceActions ? KestrinTone.Risk : KestrinTone.Link
            }
        }

        KestrinCard {
            width: parent.width

            Row {
                width: parent.width
                visible: root.protection.events.count === 0
                spacing: 10

                KestrinSymbol {
                    id: tray

                    anchors.verticalCenter: parent.verticalCenter
                    name: "tray"
                    color: KestrinColors.textSecondary
                }

                KestrinText {
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - tray.width - parent.spacing
                    text: "No Mac engine events yet. Run a Mac Check or change Privacy Mode to create activity."
                    size: 13
                    weight: KestrinWeight.Semibold
                    color: KestrinColors.textSecondary
                }
            }

            Column {
                width: parent.width

                Repeater {
                    model: root.protection.events

                    MacEngineEventRow {}
                }
            }
        }

        KestrinPressable {
            implicitWidth: link.width
            implicitHeight: link.height + 8
            onClicked: root.protection.openLog()

            Accessible.name: link.text

            KestrinText {
                id: link

                anchors.verticalCenter: parent.verticalCenter
                text: "Show the whole log"
                size: 13
                weight: KestrinWeight.Semibold
                color: KestrinColors.link
                silent: true
            }

            KestrinFocusRing {
                targetRadius: 6
            }
        }
    }
}
