import QtQuick
import KestrinDesignSystem

// A schedule preset and its switch.
Item {
    id: root

    required property int index
    required property string identifier
    required property string title
    required property string subtitle
    required property string status
    required property string icon
    required property bool on

    signal flipped(on: bool)

    readonly property real spacing: 14

    implicitHeight: Math.max(92, texts.implicitHeight)

    KestrinSurface {
        id: tile

        anchors.verticalCenter: parent.verticalCenter
        width: 44
        height: 44
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

    // The switch says all of it.
    Column {
        id: texts

        anchors.left: tile.right
        anchors.leftMargin: root.spacing
        anchors.right: toggle.left
        anchors.rightMargin: root.spacing
        anchors.verticalCenter: parent.verticalCenter
        spacing: 5

        KestrinText {
            width: parent.width
            text: root.title
            size: 16
            weight: KestrinWeight.Bold
            silent: true
        }

        KestrinText {
            width: parent.width
            text: root.subtitle
            size: 12
            color: KestrinColors.textSecondary
            lineLimit: 2
            silent: true
        }

        KestrinText {
            width: parent.width
            text: root.status
            size: 12
            weight: KestrinWeight.Semibold
            color: KestrinColors.deepGreen
            silent: true
        }
    }

    KestrinToggle {
        id: toggle

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        on: root.on
        onFlipped: on => root.flipped(on)

        Accessible.name: root.title
        Accessible.description: root.status + ", " + root.subtitle
    }
}
