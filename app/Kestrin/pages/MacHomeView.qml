import QtQuick
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection

    signal chosen(section: int)

    title: protection.privacyModeOn ? "You are protected" : "Protection is off"
    subtitle: protection.tagline

    KestrinCard {
        width: parent.width

        Row {
            id: switching

            width: parent.width
            spacing: 24

            KestrinSurface {
                id: shield

                width: 96
                height: 96
                shape: KestrinSurface.Circle
                color: Qt.alpha(KestrinColors.freshGreen, 0.16)

                KestrinSymbol {
                    anchors.centerIn: parent
                    name: root.protection.privacyModeOn ? "checkmark.shield.fill" : "shield"
                    size: 56
                    weight: KestrinWeight.Bold
                    color: root.protection.privacyModeOn ? KestrinColors.freshGreen : KestrinColors.textSecondary
                }
            }

            Column {
                anchors.verticalCenter: parent.verticalCenter
                width: switching.width - shield.width - toggle.width - 2 * switching.spacing
                spacing: 8

                KestrinText {
                    width: parent.width
                    text: "Privacy Mode"
                    size: 20
                    weight: KestrinWeight.Bold
                    heading: true
                }

                KestrinText {
                    width: parent.width
                    text: "Manage Protected Apps"
                    size: 14
                    color: KestrinColors.textSecondary
                }

                KestrinText {
                    width: parent.width
                    text: root.protection.privacyModeOn ? "ON" : "OFF"
                    size: 15
                    weight: KestrinWeight.Semibold
                    color: root.protection.privacyModeOn ? KestrinColors.freshGreen : KestrinColors.attention
                    // The switch says it.
                    silent: true
                }
            }

            KestrinToggle {
                id: toggle

                anchors.verticalCenter: parent.verticalCenter
                width: 72
                on: root.protection.privacyModeOn
                onFlipped: on => root.protection.privacyModeOn = on

                Accessible.name: "Privacy Mode"
            }
        }
    }

    Column {
        width: parent.width
        spacing: 10

        MacLine {
            text: "Device status"
        }

        Repeater {
            model: root.protection.devices

            MacDeviceSummaryRow {}
        }
    }

    Row {
        width: parent.width
        spacing: 12

        KestrinPrimaryButton {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.floor((parent.width - parent.spacing) / 2)
            title: root.protection.privacyModeOn ? "Run Mac Check" : "Turn on Privacy Mode"
            systemImage: "shield.checkered"
            onClicked: {
                if (root.protection.privacyModeOn) {
                    root.protection.runLiveCheck();
                    root.chosen(MacSection.Apps);
                } else {
                    root.protection.privacyModeOn = true;
                }
            }
        }

        KestrinSecondaryButton {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - x
            title: "Manage devices"
            systemImage: "rectangle.connected.to.line.below"
            onClicked: root.chosen(MacSection.Devices)
        }
    }

    KestrinCard {
        width: parent.width

        Item {
            width: parent.width
            implicitHeight: note.implicitHeight

            KestrinSymbol {
                id: sign

                name: "info.circle.fill"
                color: KestrinColors.link
            }

            KestrinText {
                id: note

                x: sign.width + 12
                width: parent.width - x
                text: "The Mac app monitors selected protected apps locally. Turn on Mac app actions in Access when you want Kestrin to send quit requests for selected apps."
                size: 13
                color: KestrinColors.textSecondary
                lineSpacing: 3
            }
        }
    }
}
