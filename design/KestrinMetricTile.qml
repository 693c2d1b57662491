import QtQuick
import KestrinDesignSystem

// A number with a caption and an icon. Takes the width that it is given; read as one phrase.
Item {
    id: root

    required property string title
    required property string value
    required property int tone
    required property string systemImage

    readonly property real padding: 16

    implicitWidth: stack.implicitWidth + 2 * padding
    implicitHeight: Math.max(112, stack.implicitHeight) + 2 * padding

    Accessible.role: Accessible.StaticText
    Accessible.name: title + ", " + value

    KestrinPanel {
        anchors.fill: parent
        radius: 16
    }

    Column {
        id: stack

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
        spacing: 8

        KestrinSymbol {
            name: root.systemImage
            size: 16
            weight: KestrinWeight.Semibold
            color: KestrinTones.color(root.tone)
        }

        KestrinText {
            width: Math.min(implicitWidth, parent.width)
            text: root.value
            size: 32
            weight: KestrinWeight.Heavy
            lineLimit: 1
            minimumScale: 0.72
            silent: true
        }

        KestrinText {
            width: Math.min(implicitWidth, parent.width)
            text: root.title
            size: 17
            color: KestrinColors.textSecondary
            lineLimit: 1
            minimumScale: 0.76
            silent: true
        }
    }
}
