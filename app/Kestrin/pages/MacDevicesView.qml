import QtQuick
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection

    signal chosen(section: int)

    title: "Devices"
    subtitle: "Check protection and connection status across your devices."

    Grid {
        width: parent.width
        columns: 2
        spacing: 12
        verticalItemAlignment: Grid.AlignVCenter

        Repeater {
            model: root.protection.devices

            MacDeviceSummaryRow {
                id: tile

                required property int index

                // Whole pixels; the right one takes what is left.
                width: tile.index % 2 === 0 ? Math.floor((parent.width - 12) / 2) : Math.ceil((parent.width - 12) / 2)
            }
        }
    }

    Row {
        width: parent.width
        spacing: 12

        KestrinPrimaryButton {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.floor((parent.width - parent.spacing) / 2)
            title: "Open Install & Connect"
            systemImage: "link"
            onClicked: root.chosen(MacSection.Connect)
        }

        KestrinSecondaryButton {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - x
            title: "Review Access"
            systemImage: "key.fill"
            onClicked: root.chosen(MacSection.Access)
        }
    }
}
