import QtQuick
import QtQuick.Layouts
import KestrinDesignSystem

// A definition of the catalog and the switch that selects it.
ColumnLayout {
    id: root

    required property int index
    required property string identifier
    required property string displayName
    required property string categories
    required property string icon
    required property string action
    required property int tone
    required property bool selected
    required property bool last

    signal flipped(on: bool)

    spacing: 0

    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: 10
        Layout.bottomMargin: 10
        spacing: 12

        KestrinSymbol {
            Layout.preferredWidth: 26
            name: root.icon
            size: 16
            weight: KestrinWeight.Semibold
            color: KestrinTones.color(root.tone)
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3

            KestrinText {
                Layout.fillWidth: true
                text: root.displayName
                size: 14
                weight: KestrinWeight.Semibold
                // The switch says all of it.
                silent: true
            }

            KestrinText {
                Layout.fillWidth: true
                text: root.categories
                size: 12
                color: KestrinColors.textSecondary
                silent: true
            }
        }

        KestrinStatusPill {
            title: root.action
            tone: root.tone

            Accessible.ignored: true
        }

        KestrinToggle {
            Layout.preferredWidth: 58
            on: root.selected
            onFlipped: on => root.flipped(on)

            Accessible.name: "Protect " + root.displayName
            Accessible.description: root.categories + ", " + root.action
        }
    }

    KestrinDivider {
        Layout.fillWidth: true
        visible: !root.last
        inset: 40
    }
}
