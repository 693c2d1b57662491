import QtQuick
import KestrinDesignSystem

// A device and how it is protected. Read as one phrase.
MacRow {
    id: root

    required subtitle
    required tone
    required property string status

    margin: 14
    padding: 14
    iconColumn: 30
    iconSize: 22
    titleWeight: KestrinWeight.Bold
    end: KestrinStatusPill {
        title: root.status
        tone: root.tone

        Accessible.ignored: true
    }

    Accessible.role: Accessible.StaticText
    Accessible.name: title + ", " + status + ", " + subtitle

    KestrinPanel {
        z: -1
        anchors.fill: parent
        radius: 8
    }
}
