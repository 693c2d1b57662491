import QtQuick
import KestrinDesignSystem

// A switch: the label that is put into it, a gap, and the track. It shows `on` and asks to change it by
// `flipped`; whoever owns the value decides. Without a label give it an `Accessible.name`.
KestrinPressable {
    id: root

    required property bool on
    default property alias label: slot.data

    signal flipped(bool on)

    readonly property real gap: 12

    implicitWidth: slot.implicitWidth + gap + track.width
    implicitHeight: Math.max(slot.implicitHeight, track.height)

    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.onToggleAction: clicked()

    onClicked: flipped(!on)

    Item {
        id: slot

        readonly property Item content: children.length > 0 ? children[0] : null

        width: track.x - root.gap
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: content ? content.implicitWidth : 0
        implicitHeight: content ? content.implicitHeight : 0
    }

    KestrinSurface {
        id: track

        x: parent.width - width
        anchors.verticalCenter: parent.verticalCenter
        width: 52
        height: 30
        radius: 17
        color: root.on ? KestrinColors.freshGreen : KestrinColors.offGraySoft
        strokeColor: KestrinColors.textMuted
        strokeWidth: KestrinAppearance.highContrast ? 1 : 0

        KestrinSurface {
            x: root.on ? parent.width - width - 3 : 3
            anchors.verticalCenter: parent.verticalCenter
            width: 24
            height: 24
            shape: KestrinSurface.Circle
            color: "white"
        }

        KestrinFocusRing {
            target: root
            targetRadius: 15
        }
    }
}
