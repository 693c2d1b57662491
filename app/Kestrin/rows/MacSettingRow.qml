import QtQuick
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

    implicitHeight: row.implicitHeight

    Accessible.role: Accessible.StaticText
    Accessible.name: phrase
    Accessible.ignored: leads

    MacRow {
        id: row

        width: parent.width
        padding: 8
        icon: root.icon
        iconColumn: 26
        iconColor: KestrinTones.color(root.tone)
        end: [
            KestrinStatusPill {
                anchors.verticalCenter: parent.verticalCenter
                title: root.detail
                tone: root.tone

                Accessible.ignored: true
            },
            KestrinSymbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.leads
                name: "chevron.right"
                size: 11
                weight: KestrinWeight.Bold
                color: KestrinColors.textSecondary
            }
        ]

        KestrinText {
            width: parent.width
            text: root.title
            size: 14
            weight: KestrinWeight.Semibold
            silent: true
        }
    }

    Loader {
        anchors.fill: parent
        active: root.leads
        sourceComponent: KestrinPressable {
            onClicked: root.clicked() // qmllint disable unqualified

            Accessible.name: root.phrase // qmllint disable unqualified

            KestrinFocusRing {
                targetRadius: 8
            }
        }
    }
}
