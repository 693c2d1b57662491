import QtQuick
import KestrinDesignSystem

// The brand mark and the word mark, in proportion to the size that is given.
Item {
    id: root

    readonly property real markSize: Math.min(width * 0.28, height * 0.72)

    Accessible.role: Accessible.Graphic
    Accessible.name: "Kestrin logo"

    Row {
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        spacing: Math.max(root.markSize * 0.24, 6)

        KestrinIconMark {
            id: mark

            anchors.verticalCenter: parent.verticalCenter
            width: root.markSize
            height: root.markSize
            radius: root.markSize * 0.22
        }

        KestrinText {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, root.width - mark.width - parent.spacing)
            text: "Kestrin"
            size: Math.min(root.width * 0.2, root.height * 0.58)
            weight: KestrinWeight.Heavy
            color: KestrinAppearance.dark ? "white" : KestrinColors.deepGreen
            lineLimit: 1
            minimumScale: 0.7
            silent: true
        }
    }
}
