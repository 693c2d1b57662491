import QtQuick
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection

    title: "Apps"
    subtitle: "Choose Mac Protected Apps for Privacy Mode."

    // Once the page has been drawn, so that nobody waits for it as long as the check takes.
    Connections {
        id: appearance

        target: root.Window.window

        function onFrameSwapped() {
            appearance.enabled = false;
            root.protection.runLiveCheck();
        }
    }

    MacLiveCheckCard {
        width: parent.width
        protection: root.protection
        privacyModeOn: root.protection.privacyModeOn

        Connections {
            target: root.protection

            function onPrivacyModeOnChanged() {
                root.protection.updatePrivacyMode(root.protection.privacyModeOn);
                root.protection.runLiveCheck();
            }
        }
    }

    KestrinCard {
        width: parent.width
        spacing: 12

        MacLine {
            text: "Mac Protected Apps list"

            KestrinStatusPill {
                anchors.verticalCenter: parent.verticalCenter
                title: root.protection.selectedCount + " selected"
                tone: KestrinTone.Protected
            }
        }

        Column {
            width: parent.width

            Repeater {
                model: root.protection.definitions

                MacRiskDefinitionRow {
                    id: row

                    onFlipped: on => root.protection.setProtectedDefinition(row.identifier, on) // qmllint disable unqualified
                }
            }
        }
    }

    MacLine {
        heading: false
        text: root.protection.selectedCount + " Mac protected apps selected"
        size: 13
        weight: KestrinWeight.Semibold
        color: KestrinColors.textSecondary
        spacing: 12

        KestrinSecondaryButton {
            anchors.verticalCenter: parent.verticalCenter
            width: 190
            title: "Apply Recommended"
            systemImage: "wand.and.stars"
            onClicked: root.protection.applyRecommendedRiskApps()
        }

        KestrinPrimaryButton {
            anchors.verticalCenter: parent.verticalCenter
            width: 150
            title: root.protection.enforceActions ? "Apply Now" : "Run Preview"
            systemImage: "shield.checkered"
            onClicked: root.protection.runLiveCheck()
        }
    }
}
