import QtQuick
import KestrinDesignSystem

// One step of the setup, for information only. Read as one phrase.
Column {
    id: root

    required property int number
    required property string icon
    required property string title
    required property string detail

    spacing: 10

    Accessible.role: Accessible.StaticText
    Accessible.name: heading.text + ", " + detail

    KestrinSurface {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 80
        height: 80
        shape: KestrinSurface.Circle
        color: Qt.alpha(KestrinColors.freshGreen, 0.13)

        KestrinSymbol {
            anchors.centerIn: parent
            name: root.icon
            size: 34
            weight: KestrinWeight.Semibold
            color: KestrinColors.freshGreen
        }
    }

    KestrinText {
        id: heading

        anchors.horizontalCenter: parent.horizontalCenter
        text: root.number + ". " + root.title
        size: 14
        weight: KestrinWeight.Bold
        silent: true
    }

    KestrinText {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 170
        text: root.detail
        size: 12
        color: KestrinColors.textSecondary
        horizontalAlignment: Text.AlignHCenter
        lineLimit: 3
        silent: true
    }
}
