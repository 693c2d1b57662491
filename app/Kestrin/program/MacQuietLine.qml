import QtQuick
import Kestrin
import KestrinDesignSystem

// What one should know whichever page one reads: that Privacy Mode is paused, or else what cannot be seen of what runs,
// or else that nothing is selected.
Rectangle {
    id: root

    required property MacProtectionState protection
    readonly property bool isPaused: protection.pauseText !== ""
    readonly property bool isWarning: !isPaused && protection.sightText !== ""
    readonly property string sentence: isPaused
        ? protection.pauseText + ". It comes back on by itself, and schedules rest until then."
        : isWarning ? protection.sightText
        : "Nothing is selected, so everything is protected. Select applications on the Apps page to protect only those."

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
        text: root.sentence
        size: 13
    }

    KestrinSecondaryButton {
        id: help

        x: root.width - width - 28
        y: (root.height - height) / 2
        implicitHeight: 32
        width: Math.max(implicitWidth, 92)
        visible: title !== ""
        title: root.isPaused ? "Resume" : root.protection.sightHelp
        textSize: 13
        onClicked: {
            if (root.isPaused)
                root.protection.privacyModeOn = true;
            else
                root.protection.helpSight();
        }
    }
}
