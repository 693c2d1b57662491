import QtQuick
import KestrinDesignSystem

// The line between the rows of a list.
Item {
    id: root

    // Free room on the leading side.
    property real inset: 0

    implicitHeight: 1

    KestrinSurface {
        anchors.fill: parent
        anchors.leftMargin: root.inset
        color: KestrinColors.divider
    }
}
