import QtQuick
import KestrinDesignSystem

// Shows where the keyboard is, around the item that it is put in.
KestrinSurface {
    property Item target: parent
    property real targetRadius: 10

    readonly property real gap: 2

    anchors.fill: parent
    anchors.margins: -gap - strokeWidth
    visible: target.activeFocus
    radius: targetRadius + gap + strokeWidth
    strokeColor: KestrinColors.link
    strokeWidth: KestrinAppearance.highContrast ? 3 : 2
}
