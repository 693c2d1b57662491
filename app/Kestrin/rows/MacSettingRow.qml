import QtQuick
import KestrinDesignSystem

// A setting and its state, read as one phrase. Where it `leads` somewhere, the whole row is a button.
MacRow {
    id: root

    required property string detail
    required tone
    property bool leads: false

    signal clicked

    readonly property string phrase: title + ", " + detail

    padding: 8
    iconColumn: 26
    iconWeight: KestrinWeight.Regular
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

    Accessible.role: Accessible.StaticText
    Accessible.name: phrase
    Accessible.ignored: leads

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
