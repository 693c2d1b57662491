import QtQuick
import Kestrin
import KestrinDesignSystem

// What the engine makes of the applications that are running now.
Column {
    id: root

    required property MacProtectionState protection
    required property bool privacyModeOn

    readonly property string explanation: {
        if (!privacyModeOn)
            return "Privacy Mode is off. Turn it on from Home to run Mac protection checks.";
        if (protection.enforceActions)
            return "Reads visible running Mac apps and sends quit requests for selected protected apps.";
        return "Reads visible running Mac apps and previews selected protected app actions without closing apps.";
    }

    spacing: 14

    Item {
        width: parent.width
        implicitHeight: Math.max(heading.implicitHeight, actions.implicitHeight)

        Column {
            id: heading

            anchors.left: parent.left
            anchors.right: actions.left
            anchors.rightMargin: 16
            spacing: 5

            Row {
                spacing: 8

                KestrinSymbol {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "waveform.path.ecg.rectangle"
                    color: KestrinColors.freshGreen
                }

                KestrinText {
                    anchors.verticalCenter: parent.verticalCenter
                    text: "Live Mac Check"
                    size: 18
                    weight: KestrinWeight.Bold
                    heading: true
                }

                KestrinStatusPill {
                    title: root.protection.monitorLabel
                    tone: root.protection.enforceActions ? KestrinTone.Risk : KestrinTone.Link
                }
            }

            KestrinText {
                width: parent.width
                text: root.explanation
                size: 12
                color: KestrinColors.textSecondary
            }
        }

        Column {
            id: actions

            anchors.right: parent.right
            spacing: 8

            KestrinSecondaryButton {
                anchors.right: parent.right
                width: 170
                title: "Run Live Check"
                systemImage: "arrow.clockwise"
                onClicked: root.protection.runLiveCheck()
            }

            KestrinText {
                anchors.right: parent.right
                text: "Last checked " + root.protection.lastCheckedLabel
                size: 11
                weight: KestrinWeight.Medium
                color: KestrinColors.textSecondary
            }
        }
    }

    Row {
        width: parent.width
        spacing: 10

        KestrinMetricTile {
            width: Math.floor((parent.width - 2 * parent.spacing) / 3)
            title: "Running apps"
            value: root.protection.runningAppCount
            tone: KestrinTone.Neutral
            systemImage: "macwindow"
        }

        KestrinMetricTile {
            width: Math.floor((parent.width - 2 * parent.spacing) / 3)
            title: "Protected app matches"
            value: root.protection.matchCount
            tone: root.protection.matchCount > 0 ? KestrinTone.Attention : KestrinTone.Protected
            systemImage: "checkmark.shield.fill"
        }

        KestrinMetricTile {
            width: parent.width - x
            title: root.protection.enforceActions ? "Actions applied" : "Actions previewed"
            value: root.protection.actionCount
            tone: root.protection.actionCount > 0 ? KestrinTone.Risk : KestrinTone.Protected
            systemImage: "hand.raised.fill"
        }
    }

    Item {
        width: parent.width
        implicitHeight: notice.implicitHeight + 2
        visible: !root.privacyModeOn || root.protection.matchCount === 0

        KestrinSymbol {
            id: sign

            anchors.verticalCenter: notice.verticalCenter
            name: root.privacyModeOn ? "checkmark.circle.fill" : "pause.circle.fill"
            color: root.privacyModeOn ? KestrinColors.freshGreen : KestrinColors.attention
        }

        KestrinText {
            id: notice

            anchors.left: sign.right
            anchors.leftMargin: 10
            anchors.right: parent.right
            y: 2
            text: root.privacyModeOn ? "No selected Mac protected apps are running right now." : "Privacy Mode is currently off, so no Mac app actions are run."
            size: 13
            weight: KestrinWeight.Semibold
            color: KestrinColors.textSecondary
        }
    }

    Item {
        width: parent.width
        visible: root.privacyModeOn && root.protection.matchCount > 0
        implicitHeight: list.implicitHeight + 2 * list.anchors.margins

        KestrinPanel {
            anchors.fill: parent
            radius: 8
        }

        Column {
            id: list

            anchors.fill: parent
            anchors.margins: 12

            Repeater {
                model: root.protection.shownMatches

                MacLiveRiskMatchRow {}
            }
        }
    }
}
