import QtQuick
import KestrinDesignSystem

// A definition of the catalog and the switch that selects it.
Column {
    id: root

    required property int index
    required property string identifier
    required property string displayName
    required property string categories
    required property string icon
    required property string action
    required property int tone
    required property bool selected

    signal flipped(on: bool)

    KestrinDivider {
        width: parent.width
        visible: root.index > 0
        inset: 40
    }

    MacRow {
        width: parent.width
        padding: 10
        icon: root.icon
        iconColumn: 26
        iconSize: 16
        iconWeight: KestrinWeight.Semibold
        iconColor: KestrinTones.color(root.tone)
        end: [
            KestrinStatusPill {
                anchors.verticalCenter: parent.verticalCenter
                title: root.action
                tone: root.tone

                Accessible.ignored: true
            },
            KestrinToggle {
                anchors.verticalCenter: parent.verticalCenter
                width: 58
                on: root.selected
                onFlipped: on => root.flipped(on)

                Accessible.name: "Protect " + root.displayName
                Accessible.description: root.categories + ", " + root.action
            }
        ]

        // The switch says all of it.
        KestrinText {
            width: parent.width
            text: root.displayName
            size: 14
            weight: KestrinWeight.Semibold
            silent: true
        }

        KestrinText {
            width: parent.width
            text: root.categories
            size: 12
            color: KestrinColors.textSecondary
            silent: true
        }
    }
}
