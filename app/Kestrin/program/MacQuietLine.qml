import QtQuick
import Kestrin
import KestrinDesignSystem

// What one should know whichever page one reads: what cannot be seen of what runs, or else that nothing is selected.
Rectangle {
    id: root

    required property MacProtectionState protection
    readonly property bool isWarning: protection.sightText !== ""

    height: Math.max(text.height + 24, help.visible ? help.height + 16 : 0)
    color: isWarning ? KestrinColors.attentionSoft : KestrinColors.linkSoft

    KestrinSymbol {
        x: 28
        y: text.y + (text.naturalHeight - height) / 2
        name: root.isWarning ? "exclamationmark.shield.fill" : "info.circle.fill"
        size: 15
        color: root.isWarning ? KestrinColors.attention : KestrinColors.link
    }

    KestrinText {
        id: text

        x: 56
        y: (root.height - height) / 2
        width: root.width - x - (help.visible ? help.width + 20 : 0) - 28
        text: root.isWarning ? root.protection.sightText : "Nothing is selected, so everything is protected. "
            + "Select applications on the Apps page to protect only those."
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
