import QtQuick
import QtQuick.Layouts
import KestrinDesignSystem

// A device and how it is protected. Read as one phrase.
Item {
    id: root

    required property string name
    required property string detail
    required property string icon
    required property string status
    required property int tone

    implicitWidth: row.implicitWidth + 2 * row.anchors.margins
    implicitHeight: row.implicitHeight + 2 * row.anchors.margins

    Accessible.role: Accessible.StaticText
    Accessible.name: name + ", " + status + ", " + detail

    KestrinSurface {
        anchors.fill: parent
        radius: 8
        color: KestrinColors.surfaceMuted
        strokeColor: KestrinColors.border
        strokeWidth: 1
    }

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.margins: 14
        spacing: 12

        KestrinSymbol {
            Layout.preferredWidth: 30
            name: root.icon
            size: 22
            weight: KestrinWeight.Semibold
            color: KestrinTones.color(root.tone)
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3

            KestrinText {
                Layout.fillWidth: true
                text: root.name
                size: 14
                weight: KestrinWeight.Bold
                silent: true
            }

            KestrinText {
                Layout.fillWidth: true
                text: root.detail
                size: 12
                color: KestrinColors.textSecondary
                silent: true
            }
        }

        KestrinStatusPill {
            title: root.status
            tone: root.tone

            Accessible.ignored: true
        }
    }
}
