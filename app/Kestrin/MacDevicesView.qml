import QtQuick
import QtQuick.Layouts
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection

    signal chosen(section: int)

    title: "Devices"
    subtitle: "Check protection and connection status across your devices."

    GridLayout {
        Layout.fillWidth: true
        columns: 2
        columnSpacing: 12
        rowSpacing: 12

        Repeater {
            model: root.protection.devices

            MacDeviceSummaryRow {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
            }
        }
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 12

        KestrinPrimaryButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            title: "Open Install & Connect"
            systemImage: "link"
            onClicked: root.chosen(MacSection.Connect)
        }

        KestrinSecondaryButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            title: "Review Access"
            systemImage: "key.fill"
            onClicked: root.chosen(MacSection.Access)
        }
    }
}
