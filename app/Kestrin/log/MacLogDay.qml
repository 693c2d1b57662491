import QtQuick
import KestrinDesignSystem

// The name of a day, and how many of its events are shown.
Item {
    id: root

    required property string title
    required property string count

    KestrinText {
        x: 14
        width: number.x - x - 12
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: 4
        text: root.title
        size: 14
        weight: KestrinWeight.Bold
        lineLimit: 1
        silent: true
    }

    KestrinText {
        id: number

        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: 4
        text: root.count
        size: 12
        color: KestrinColors.textSecondary
        silent: true
    }

    KestrinDivider {
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 14
        anchors.rightMargin: 14
    }
}
