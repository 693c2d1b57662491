import QtQuick
import QtQuick.Layouts
import Kestrin
import KestrinDesignSystem

// What the engine makes of the applications that are running now.
ColumnLayout {
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

    RowLayout {
        Layout.fillWidth: true
        spacing: 8

        ColumnLayout {
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignTop
            spacing: 5

            RowLayout {
                Layout.fillWidth: true
                spacing: 8

                KestrinSymbol {
                    name: "waveform.path.ecg.rectangle"
                    color: KestrinColors.freshGreen
                }

                KestrinText {
                    text: "Live Mac Check"
                    size: 18
                    weight: KestrinWeight.Bold
                    heading: true
                }

                KestrinStatusPill {
                    title: root.protection.monitorLabel
                    tone: root.protection.enforceActions ? KestrinTone.Risk : KestrinTone.Link
                }

                Item {
                    Layout.fillWidth: true
                }
            }

            KestrinText {
                Layout.fillWidth: true
                text: root.explanation
                size: 12
                color: KestrinColors.textSecondary
            }
        }

        ColumnLayout {
            Layout.alignment: Qt.AlignTop
            spacing: 8

            KestrinSecondaryButton {
                Layout.preferredWidth: 170
                Layout.alignment: Qt.AlignRight
                title: "Run Live Check"
                systemImage: "arrow.clockwise"
                onClicked: root.protection.runLiveCheck()
            }

            KestrinText {
                Layout.alignment: Qt.AlignRight
                text: "Last checked " + root.protection.lastCheckedLabel
                size: 11
                weight: KestrinWeight.Medium
                color: KestrinColors.textSecondary
            }
        }
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 10

        KestrinMetricTile {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            title: "Running apps"
            value: root.protection.runningAppCount
            tone: KestrinTone.Neutral
            systemImage: "macwindow"
        }

        KestrinMetricTile {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            title: "Protected app matches"
            value: root.protection.matchCount
            tone: root.protection.matchCount > 0 ? KestrinTone.Attention : KestrinTone.Protected
            systemImage: "checkmark.shield.fill"
        }

        KestrinMetricTile {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            title: root.protection.enforceActions ? "Actions applied" : "Actions previewed"
            value: root.protection.actionCount
            tone: root.protection.actionCount > 0 ? KestrinTone.Risk : KestrinTone.Protected
            systemImage: "hand.raised.fill"
        }
    }

    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: 2
        visible: !root.privacyModeOn || root.protection.matchCount === 0
        spacing: 10

        KestrinSymbol {
            name: root.privacyModeOn ? "checkmark.circle.fill" : "pause.circle.fill"
            color: root.privacyModeOn ? KestrinColors.freshGreen : KestrinColors.attention
        }

        KestrinText {
            Layout.fillWidth: true
            text: root.privacyModeOn ? "No selected Mac protected apps are running right now." : "Privacy Mode is currently off, so no Mac app actions are run."
            size: 13
            weight: KestrinWeight.Semibold
            color: KestrinColors.textSecondary
        }
    }

    Item {
        Layout.fillWidth: true
        visible: root.privacyModeOn && root.protection.matchCount > 0
        implicitHeight: list.implicitHeight + 2 * list.anchors.margins

        KestrinSurface {
            anchors.fill: parent
            radius: 8
            color: KestrinColors.surfaceMuted
            strokeColor: KestrinColors.border
            strokeWidth: 1
        }

        ColumnLayout {
            id: list

            anchors.fill: parent
            anchors.margins: 12
            spacing: 0

            Repeater {
                model: root.protection.shownMatches

                MacLiveRiskMatchRow {
                    Layout.fillWidth: true
                    last: index === root.protection.shownMatches.count - 1
                }
            }
        }
    }
}
