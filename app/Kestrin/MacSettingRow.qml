import QtQuick
import QtQuick.Layouts
import KestrinDesignSystem

// A setting and its state, read as one phrase. Where it `leads` somewhere, the whole row is a button.
Item {
    id: root

    required property string title
    required property string detail
    required property string icon
    required property int tone
    property bool leads: false

    signal clicked

    readonly property string phrase: title + ", " + detail

    Layout.fillWidth: true
    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight + 2 * 8

    Accessible.role: Accessible.StaticText
    Accessible.name: phrase
    Accessible.ignored: leads

    RowLayout {
        id: row

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 12

        KestrinSymbol {
            Layout.preferredWidth: 26
            name: root.icon
            color: KestrinTones.color(root.tone)
        }

        KestrinText {
            Layout.fillWidth: true
            text: root.title
            size: 14
            weight: KestrinWeight.Semibold
            silent: true
        }

        KestrinStatusPill {
            title: root.detail
            tone: root.tone

            Accessible.ignored: true
        }

        KestrinSymbol {
            visible: root.leads
            name: "chevron.right"
            size: 11
            weight: KestrinWeight.Bold
            color: KestrinColors.textSecondary
        }
    }

    KestrinPressable {
        anchors.fill: parent
        visible: root.leads
        onClicked: root.clicked()

        Accessible.name: root.phrase

        KestrinFocusRing {
            targetRadius: 8
        }
    }
}
