import QtQuick
import QtQuick.Layouts
import KestrinDesignSystem

// A protected application that is running, and what its definition wants done. Read as one phrase.
ColumnLayout {
    id: root

    required property int index
    required property string name
    required property string categories
    required property string icon
    required property string action
    required property int tone
    required property bool last

    spacing: 0

    Accessible.role: Accessible.StaticText
    Accessible.name: name + ", " + categories + ", " + action

    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: 9
        Layout.bottomMargin: 9
        spacing: 12

        KestrinSymbol {
            Layout.preferredWidth: 24
            name: root.icon
            size: 15
            weight: KestrinWeight.Semibold
            color: KestrinTones.color(root.tone)
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3

            KestrinText {
                Layout.fillWidth: true
                text: root.name
                size: 13
                weight: KestrinWeight.Semibold
                silent: true
            }

            KestrinText {
                Layout.fillWidth: true
                text: root.categories
                size: 11
                color: KestrinColors.textSecondary
                silent: true
            }
        }

        KestrinStatusPill {
            title: root.action
            tone: root.tone

            Accessible.ignored: true
        }
    }

    KestrinDivider {
        Layout.fillWidth: true
        visible: !root.last
        inset: 34
    }
}
