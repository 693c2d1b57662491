import QtQuick
import Kestrin
import KestrinDesignSystem

// What cannot be seen of what runs, above every page.
Rectangle {
    id: root

    required property MacProtectionState protection

    height: Math.max(text.height + 24, help.visible ? help.height + 16 : 0)
    color: KestrinColors.attentionSoft

    KestrinSymbol {
        x: 28
        y: text.y + (text.naturalHeight - height) / 2
        name: "exclamationmark.shield.fill"
        size: 15
        color: KestrinColors.attention
    }

    KestrinText {
        id: text

        x: 54
        y: (root.height - height) / 2
        width: root.width - x - (help.visible ? help.width + 20 : 0) - 28
        text: root.protection.sightText
        size: 13
    }

    KestrinSecondaryButton {
        id: help

        x: root.width - width - 28
        y: (root.height - height) / 2
        implicitHeight: 32
        width: Math.max(implicitWidth, 92)
        visible: root.protection.sightHelp !== ""
        title: root.protection.sightHelp
        textSize: 13
        onClicked: root.protection.helpSight()
    }
}
