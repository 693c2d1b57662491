import QtQuick
import QtQuick.Layouts
import KestrinDesignSystem

// A schedule preset and its switch.
Item {
    id: root

    required property string identifier
    required property string name
    required property string detail
    required property string schedule
    required property string icon
    required property bool on

    signal flipped(on: bool)

    implicitWidth: row.implicitWidth
    implicitHeight: Math.max(92, row.implicitHeight)

    RowLayout {
        id: row

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 14

        KestrinSurface {
            implicitWidth: 44
            implicitHeight: 44
            radius: 8
            color: Qt.alpha(KestrinColors.freshGreen, 0.13)

            KestrinSymbol {
                anchors.centerIn: parent
                name: root.icon
                size: 20
                weight: KestrinWeight.Semibold
                color: KestrinColors.freshGreen
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 5

            KestrinText {
                Layout.fillWidth: true
                text: root.name
                size: 16
                weight: KestrinWeight.Bold
                // The switch says all of it.
                silent: true
            }

            KestrinText {
                Layout.fillWidth: true
                text: root.detail
                size: 12
                color: KestrinColors.textSecondary
                lineLimit: 2
                silent: true
            }

            KestrinText {
                Layout.fillWidth: true
                text: root.schedule
                size: 12
                weight: KestrinWeight.Semibold
                color: KestrinColors.deepGreen
                silent: true
            }
        }

        KestrinToggle {
            on: root.on
            onFlipped: on => root.flipped(on)

            Accessible.name: root.name
            Accessible.description: root.schedule + ", " + root.detail
        }
    }
}
