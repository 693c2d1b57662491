import QtQuick
import KestrinDesignSystem

// One of several words that can be chosen: it shows `on` and asks by `clicked`. With `exclusive` only one of them is.
KestrinPressable {
    id: root

    required property string title
    required property bool on
    property bool exclusive: false

    implicitWidth: label.implicitWidth + 28
    implicitHeight: 34

    Accessible.role: exclusive ? Accessible.RadioButton : Accessible.CheckBox
    Accessible.name: title
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.onToggleAction: clicked()

    KestrinSurface {
        anchors.fill: parent
        shape: KestrinSurface.Capsule
        color: root.on ? KestrinColors.softGreen : KestrinColors.surface
        strokeColor: root.on ? KestrinColors.freshGreen : KestrinColors.border
        strokeWidth: root.on ? 2 : 1.5
    }

    KestrinText {
        id: label

        anchors.centerIn: parent
        text: root.title
        size: 13
        weight: KestrinWeight.Semibold
        color: root.on ? KestrinColors.freshGreen : KestrinColors.textPrimary
        lineLimit: 1
        silent: true
    }

    KestrinFocusRing {
        targetRadius: root.height / 2
    }
}
