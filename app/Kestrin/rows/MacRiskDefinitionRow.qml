import QtQuick
import KestrinDesignSystem

// A definition of the catalog and the switch that selects it, which says all of it.
MacRow {
    id: root

    required property int index
    required property string identifier
    required subtitle
    required tone
    required property string status
    required property bool on
    // The user's own, which he may remove.
    required property bool own

    signal flipped(on: bool)
    signal removed
    signal menuWanted(x: real, y: real)

    Keys.onDeletePressed: event => {
        event.accepted = own;
        if (own)
            removed();
    }
    Keys.onMenuPressed: event => {
        event.accepted = own;
        if (own)
            menuWanted(width / 2, height / 2);
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        enabled: root.own
        onTapped: point => root.menuWanted(point.position.x, point.position.y)
    }

    divided: index > 0
    inset: 40
    padding: 10
    iconColumn: 26
    iconSize: 16
    end: [
        KestrinStatusPill {
            anchors.verticalCenter: parent.verticalCenter
            title: root.status
            tone: root.tone

            Accessible.ignored: true
        },
        KestrinToggle {
            anchors.verticalCenter: parent.verticalCenter
            width: 58
            on: root.on
            onFlipped: on => root.flipped(on)

            Accessible.name: "Protect " + root.title
            Accessible.description: root.subtitle + ", " + root.status + (root.own ? ", Delete removes it" : "")
        }
    ]
}
