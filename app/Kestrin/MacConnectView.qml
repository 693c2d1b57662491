import QtQuick
import QtQuick.Layouts
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection
    property bool copiedDiagnostics: false

    title: "Install & Connect"
    subtitle: "Confirm the Mac engine is installed and ready for stronger desktop protection."

    KestrinCard {
        Layout.fillWidth: true

        RowLayout {
            Layout.alignment: Qt.AlignHCenter
            spacing: 28

            MacConnectStep {
                number: 1
                icon: "checkmark.circle.fill"
                title: "Mac app installed"
                detail: "This app is running locally on your Mac."
            }

            KestrinSymbol {
                name: "arrow.right"
                color: KestrinColors.textSecondary
            }

            MacConnectStep {
                number: 2
                icon: "waveform.path.ecg.rectangle"
                title: "Engine running"
                detail: "The relaunch monitor is active in the current mode."
            }

            KestrinSymbol {
                name: "arrow.right"
                color: KestrinColors.textSecondary
            }

            MacConnectStep {
                number: 3
                icon: "iphone"
                title: "Mobile setup"
                detail: "Use the iPhone app for iPhone and iPad Screen Time setup."
            }
        }
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 16

        SettingsColumn {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.alignment: Qt.AlignTop
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
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.alignment: Qt.AlignTop
            title: "Connection actions"

            KestrinPrimaryButton {
                Layout.fillWidth: true
                title: "Run Mac Check"
                systemImage: "shield.checkered"
                onClicked: root.protection.runLiveCheck()
            }

            KestrinSecondaryButton {
                Layout.fillWidth: true
                title: root.copiedDiagnostics ? "Diagnostics Copied" : "Copy Diagnostics"
                systemImage: "doc.on.doc.fill"
                onClicked: {
                    root.protection.copyDiagnostics();
                    root.copiedDiagnostics = true;
                }
            }

            KestrinText {
                Layout.fillWidth: true
                text: "Diagnostics include only local status values shown on this screen."
                size: 12
                color: KestrinColors.textSecondary
            }
        }
    }
}
