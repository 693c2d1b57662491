import QtQuick
import QtQuick.Templates as T
import KestrinDesignSystem

// Shows which part of a page is seen, and moves it.
T.ScrollBar {
    id: root

    required property Flickable view

    leftPadding: 3
    rightPadding: 3
    implicitWidth: 12
    minimumSize: 36 / Math.max(height, 36)
    // For a few points it would only be in the way.
    visible: view.contentHeight - view.height > 4
    contentItem: KestrinSurface {
        implicitWidth: 6
        shape: KestrinSurface.Capsule
        color: Qt.alpha(KestrinColors.textMuted, root.hovered || root.pressed ? 0.9 : 0.5)
    }

    Accessible.ignored: true
}
