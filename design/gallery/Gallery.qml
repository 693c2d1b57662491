import QtQuick
import QtQuick.Layouts
import KestrinDesignSystem

// Every component in every look that it has, and texts that have too little room.
Rectangle {
    width: 1000
    height: 700
    color: KestrinColors.warmIvory

    ColumnLayout {
        x: 28
        y: 26
        width: parent.width - 2 * x
        spacing: 18

        RowLayout {
            spacing: 24

            KestrinText {
                Layout.fillWidth: true
                text: "You are protected"
                size: 30
                weight: KestrinWeight.Bold
                lineLimit: 1
                minimumScale: 0.82
            }

            Repeater {
                model: [16, 24, 37.44, 64]

                KestrinIconMark {
                    required property real modelData

                    implicitWidth: modelData
                    implicitHeight: modelData
                    radius: modelData * 0.22
                }
            }
        }

        RowLayout {
            spacing: 10

            Repeater {
                model: [
                    ["Running apps", "12", KestrinTone.Neutral, "macwindow"],
                    ["Protected app matches", "3", KestrinTone.Attention, "exclamationmark.shield.fill"],
                    ["Actions previewed and everything else that was found", "12,345,678,901,234", KestrinTone.Protected, "hand.raised.fill"]
                ]

                KestrinMetricTile {
                    required property var modelData

                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    title: modelData[0]
                    value: modelData[1]
                    tone: modelData[2]
                    systemImage: modelData[3]
                }
            }
        }

        RowLayout {
            spacing: 12

            KestrinPrimaryButton {
                Layout.fillWidth: true
                title: "Run Mac Check"
                systemImage: "shield.checkered"
                focus: true
            }
            KestrinSecondaryButton {
                Layout.preferredWidth: 190
                title: "Apply Recommended"
                systemImage: "wand.and.stars"
            }
            KestrinPrimaryButton {
                Layout.preferredWidth: 150
                title: "Run Preview"
            }
        }

        RowLayout {
            spacing: 10

            Repeater {
                model: [
                    ["On", KestrinTone.Protected, -1],
                    ["0 enabled", KestrinTone.Attention, -1],
                    ["Enforcing", KestrinTone.Risk, -1],
                    ["Mobile app", KestrinTone.Link, -1],
                    ["Companion", KestrinTone.Neutral, -1],
                    ["Shrinks to fit this", KestrinTone.Link, 140],
                    ["Much too long for this", KestrinTone.Risk, 110]
                ]

                KestrinStatusPill {
                    required property var modelData

                    Layout.preferredWidth: modelData[2]
                    title: modelData[0]
                    tone: modelData[1]
                }
            }
            KestrinToggle {
                on: false
                Accessible.name: "Off"
            }
        }

        KestrinCard {
            Layout.fillWidth: true
            spacing: 10

            KestrinText {
                text: "Kestrin sends quit requests."
                size: 12
                color: KestrinColors.textSecondary
            }
            KestrinDivider {
                width: parent.width
                inset: 40
            }
            KestrinToggle {
                width: parent.width
                on: true

                KestrinText {
                    width: parent.width
                    text: "When enabled, Kestrin sends quit requests to selected Mac protected apps while Privacy Mode is on."
                }
            }
        }

        RowLayout {
            spacing: 18

            Repeater {
                model: [KestrinWeight.Regular, KestrinWeight.Medium, KestrinWeight.Semibold, KestrinWeight.Bold, KestrinWeight.Heavy]

                Row {
                    id: sample

                    required property int modelData

                    spacing: 6

                    KestrinSymbol {
                        name: "laptopcomputer"
                        size: 18
                        weight: sample.modelData
                        color: KestrinColors.textPrimary
                    }
                    KestrinText {
                        text: sample.modelData
                        size: 18
                        weight: sample.modelData
                    }
                }
            }
        }

        Grid {
            columns: 16
            rowSpacing: 14
            columnSpacing: 30

            Repeater {
                model: symbolNames

                KestrinSymbol {
                    required property string modelData

                    width: 30
                    height: 30
                    name: modelData
                    size: 22
                    weight: KestrinWeight.Semibold
                    color: KestrinColors.deepGreen
                }
            }
        }
    }
}
