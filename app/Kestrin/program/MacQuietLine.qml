import QtQuick
import Kestrin
import KestrinDesignSystem

// What one should know whichever page one reads. Who uses microphone, camera or screen comes first. Below that: that
// Privacy Mode is paused, or else what cannot be seen of what runs, or else that nothing is selected.
Rectangle {
    id: root

    required property MacProtectionState protection
    readonly property string useText: protection.liveUse.sentences
    readonly property bool isPaused: protection.pauseText !== ""
    readonly property bool isWarning: !isPaused && protection.sightText !== ""
    readonly property string sentence: isPaused
        ? protection.pauseText + ". It comes back on by itself, and schedules rest until then."
        : isWarning ? protection.sightText : protection.selectedCount > 0 ? ""
        : "Nothing is selected, so everything is protected. Select applications on the Apps page to protect only those."
    // What two lines have in common.
    readonly property real overlap: useText !== "" && sentence !== "" ? 14 : 0

    height: useLine.height + line.height - overlap
    color: isWarning ? KestrinColors.attentionSoft : KestrinColors.linkSoft

    Item {
        id: useLine

        width: parent.width
        height: visible ? useSentence.height + 24 : 0
        visible: root.useText !== ""

        KestrinSymbol {
            x: 28
            y: useSentence.y + (useSentence.naturalHeight - height) / 2
            name: root.protection.liveUse.symbol
            size: 15
            color: KestrinColors.link
        }

        KestrinText {
            id: useSentence

            x: 56
            y: 12
            width: parent.width - x - 28
            text: root.useText
            size: 13
            weight: KestrinWeight.Semibold

            Accessible.role: Accessible.AlertMessage
        }
    }

    Item {
        id: line

        y: useLine.height - root.overlap
        width: parent.width
        height: visible ? Math.max(text.height + 24, help.visible ? help.height + 16 : 0) : 0
        visible: root.sentence !== ""

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
            y: (parent.height - height) / 2
            width: parent.width - x - (help.visible ? help.width + 20 : 0) - 28
            text: root.sentence
            size: 13
        }

        KestrinSecondaryButton {
            id: help

            x: parent.width - width - 28
            y: (parent.height - height) / 2
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
}
