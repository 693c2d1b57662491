import QtQuick
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection
    property bool copiedDiagnostics: false

    title: "Install & Connect"
    subtitle: "Confirm the Mac engine is installed and ready for stronger desktop protection."

    KestrinCard {
        width: parent.width

        Row {
            id: steps

            readonly property real tallest: Math.max(first.implicitHeight, second.implicitHeight, third.implicitHeight)

            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 28

            MacConnectStep {
                id: first

                height: steps.tallest
                number: 1
                icon: "checkmark.circle.fill"
                title: "Mac app installed"
                detail: "This app is running locally on your Mac."
            }

            KestrinSymbol {
                anchors.verticalCenter: parent.verticalCenter
                name: "arrow.right"
                color: KestrinColors.textSecondary
            }

            MacConnectStep {
                id: second

                height: steps.tallest
                number: 2
                icon: "waveform.path.ecg.rectangle"
                title: "Engine running"
                detail: "The relaunch monitor is active in the current mode."
            }

            KestrinSymbol {
                anchors.verticalCenter: parent.verticalCenter
                name: "arrow.right"
                color: KestrinColors.textSecondary
            }

            MacConnectStep {
                id: third

                height: steps.tallest
                number: 3
                icon: "iphone"
                title: "Mobile setup"
                detail: "Use the iPhone app for iPhone and iPad Screen Time setup."
            }
        }
    }

    Row {
        width: parent.width
        spacing: 16

        SettingsColumn {
            width: Math.floor((parent.width - parent.spacing) / 2)
            title: "Mac engine status"

            MacSettingRow {
                title: "Relaunch monitor"
                detail: root.protection.monitorLabel
                icon: "arrow.clockwise.circle.fill"
                tone: KestrinTone.Link
            }

            MacSettingRow {
                title: "Selected protected apps"
                detail: root.protection.selectedCount
                icon: "checklist"
                tone: KestrinTone.Protected
            }

            MacSettingRow {
                title: "Running apps scanned"
                detail: root.protection.runningAppCount
                icon: "macwindow"
                tone: KestrinTone.Neutral
            }

            MacSettingRow {
                title: "Mac app actions"
                detail: root.protection.actionsLabel
                icon: "hand.raised.fill"
                tone: root.protection.enforceActions ? KestrinTone.Risk : KestrinTone.Link
            }
        }

        SettingsColumn {
            width: parent.width - x
            title: "Connection actions"

            KestrinPrimaryButton {
                width: parent.width
                title: "Run Mac Check"
                systemImage: "shield.checkered"
                onClicked: root.protection.runLiveCheck()
            }

            KestrinSecondaryButton {
                width: parent.width
                title: root.copiedDiagnostics ? "Diagnostics Copied" : "Copy Diagnostics"
                systemImage: "doc.on.doc.fill"
                onClicked: {
                    root.protection.copyDiagnostics();
                    root.copiedDiagnostics = true;
                }
            }

            KestrinText {
                width: parent.width
                text: "Diagnostics include only local status values shown on this screen."
                size: 12
                color: KestrinColors.textSecondary
            }
        }
    }
}
