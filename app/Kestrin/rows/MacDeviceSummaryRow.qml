import QtQuick
import KestrinDesignSystem

// A device and how it is protected. Read as one phrase.
Item {
    id: root

    required property string name
    required property string detail
    required property string icon
    required property string status
    required property int tone

    implicitHeight: row.implicitHeight

    Accessible.role: Accessible.StaticText
    Accessible.name: name + ", " + status + ", " + detail

    KestrinSurface {
        anchors.fill: parent
        radius: 8
        color: KestrinColors.surfaceMuted
        strokeColor: KestrinColors.border
        strokeWidth: 1
    }

    MacRow {
        id: row

        width: parent.width
        margin: 14
        padding: 14
        icon: root.icon
        iconColumn: 30
        iconSize: 22
        iconWeight: KestrinWeight.Semibold
        iconColor: KestrinTones.color(root.tone)
        end: KestrinStatusPill {
            title: root.status
            tone: root.tone

            Accessible.ignored: true
        }

        KestrinText {
            width: parent.width
            text: root.name
            size: 14
            weight: KestrinWeight.Bold
            silent: true
        }

        KestrinText {
            width: parent.width
            text: root.detail
            size: 12
            color: KestrinColors.textSecondary
            silent: true
        }
    }
}
