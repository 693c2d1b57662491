import QtQuick
import KestrinDesignSystem

// A short coloured status word.
Item {
    id: root

    required property string title
    required property int tone

    implicitWidth: Math.max(72, label.implicitWidth + 28)
    implicitHeight: 32

    Accessible.role: Accessible.StaticText
    Accessible.name: title

    KestrinSurface {
        anchors.fill: parent
        shape: KestrinSurface.Capsule
        color: KestrinTones.softBackground(root.tone)
    }

    KestrinText {
        id: label

        x: 14
        width: parent.width - 2 * x
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignHCenter
        text: root.title
        size: 15
        weight: KestrinWeight.Bold
        color: KestrinTones.color(root.tone)
        lineLimit: 1
        minimumScale: 0.7
        silent: true
    }
}
