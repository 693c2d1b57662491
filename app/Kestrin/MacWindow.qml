import QtQuick
import Kestrin
import KestrinDesignSystem

Window {
    id: root

    required property MacProtectionState protection

    width: 1180
    height: 760
    minimumWidth: 1040
    minimumHeight: 680
    visible: true
    title: Application.displayName
    color: KestrinColors.warmIvory

    MacRootView {
        anchors.fill: parent
        protection: root.protection
    }
}
