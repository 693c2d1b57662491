import QtQuick
import QtQuick.Layouts
import KestrinDesignSystem

// An event of the activity log. Read as one phrase.
ColumnLayout {
    id: root

    required property int index
    required property string title
    required property string message
    required property string time
    required property string icon
    required property int tone
    required property bool last

    spacing: 0

    Accessible.role: Accessible.StaticText
    Accessible.name: time + ", " + title + ", " + message

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
                text: root.title
                size: 14
                weight: KestrinWeight.Semibold
                silent: true
            }

            KestrinText {
                Layout.fillWidth: true
                text: root.message
                size: 12
                color: KestrinColors.textSecondary
                lineLimit: 2
                silent: true
            }
        }

        KestrinText {
            text: root.time
            size: 12
            weight: KestrinWeight.Semibold
            color: KestrinColors.textSecondary
            silent: true
        }
    }

    KestrinDivider {
        Layout.fillWidth: true
        visible: !root.last
        inset: 40
    }
}
