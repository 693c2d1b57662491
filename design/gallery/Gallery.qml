import QtQuick
import QtQuick.Layouts
import KestrinDesignSystem

// Every component once, as pages use them.
Rectangle {
    id: root

    width: 1000
    height: 980
    color: KestrinColors.warmIvory

    property bool protecting: true

    component Field: RowLayout {
        id: field

        property string symbol
        property int tone
        property string title
        property string detail
        property string status

        Layout.fillWidth: true
        spacing: 12

        Item {
            implicitWidth: 26
            implicitHeight: icon.implicitHeight

            KestrinSymbol {
                id: icon

                anchors.centerIn: parent
                name: field.symbol
                size: 16
                weight: KestrinWeight.Semibold
                color: KestrinTones.color(field.tone)
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3

            KestrinText {
                Layout.fillWidth: true
                text: field.title
                size: 14
                weight: KestrinWeight.Semibold
            }
            KestrinText {
                Layout.fillWidth: true
                text: field.detail
                size: 12
                color: KestrinColors.textSecondary
            }
        }

        KestrinStatusPill {
            title: field.status
            tone: field.tone
        }
    }

    ColumnLayout {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.leftMargin: 28
        anchors.rightMargin: 28
        anchors.topMargin: 26
        spacing: 18

        RowLayout {
            spacing: 24

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 6

                KestrinText {
                    Layout.fillWidth: true
                    text: "You are protected"
                    size: 30
                    weight: KestrinWeight.Bold
                    lineLimit: 1
                    minimumScale: 0.82
                    heading: true
                }
                KestrinText {
                    text: "Control your privacy with one tap."
                    size: 14
                    color: KestrinColors.textSecondary
                }
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

            KestrinText {
                text: "Kestrin"
                size: 30
                weight: KestrinWeight.Heavy
                color: KestrinAppearance.dark ? "white" : KestrinColors.deepGreen
            }
        }

        KestrinCard {
            Layout.fillWidth: true

            RowLayout {
                width: parent.width
                spacing: 24

                KestrinSurface {
                    implicitWidth: 96
                    implicitHeight: 96
                    shape: KestrinSurface.Circle
                    color: Qt.alpha(KestrinColors.freshGreen, 0.16)

                    KestrinSymbol {
                        anchors.centerIn: parent
                        name: root.protecting ? "checkmark.shield.fill" : "shield"
                        size: 56
                        weight: KestrinWeight.Bold
                        color: root.protecting ? KestrinColors.freshGreen : KestrinColors.textSecondary
                    }
                }

                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 8

                    KestrinText {
                        Layout.fillWidth: true
                        text: "Privacy Mode"
                        size: 20
                        weight: KestrinWeight.Bold
                    }
                    KestrinText {
                        text: "Manage Protected Apps"
                        size: 14
                        color: KestrinColors.textSecondary
                    }
                    KestrinText {
                        text: root.protecting ? "ON" : "OFF"
                        size: 15
                        weight: KestrinWeight.Semibold
                        color: root.protecting ? KestrinColors.freshGreen : KestrinColors.attention
                    }
                }

                KestrinToggle {
                    Layout.preferredWidth: 72
                    on: root.protecting
                    onFlipped: on => root.protecting = on
                    Accessible.name: "Privacy Mode"
                }
            }
        }

        RowLayout {
            spacing: 10

            KestrinMetricTile {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                title: "Running apps"
                value: "12"
                tone: KestrinTone.Neutral
                systemImage: "macwindow"
            }
            KestrinMetricTile {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                title: "Protected app matches"
                value: "3"
                tone: KestrinTone.Attention
                systemImage: "exclamationmark.shield.fill"
            }
            KestrinMetricTile {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                title: "Actions previewed and everything else that was found"
                value: "12,345,678,901,234"
                tone: KestrinTone.Protected
                systemImage: "hand.raised.fill"
            }
        }

        RowLayout {
            spacing: 12

            KestrinPrimaryButton {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                title: "Run Mac Check"
                systemImage: "shield.checkered"
                focus: true
            }
            KestrinSecondaryButton {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                title: "Manage devices"
                systemImage: "rectangle.connected.to.line.below"
            }
            KestrinSecondaryButton {
                Layout.preferredWidth: 190
                title: "Apply Recommended"
                systemImage: "wand.and.stars"
            }
            KestrinPrimaryButton {
                Layout.preferredWidth: 150
                title: "Run Preview"
                systemImage: "shield.checkered"
            }
        }

        RowLayout {
            spacing: 10

            KestrinStatusPill {
                title: "On"
                tone: KestrinTone.Protected
            }
            KestrinStatusPill {
                title: "0 enabled"
                tone: KestrinTone.Attention
            }
            KestrinStatusPill {
                title: "Enforcing"
                tone: KestrinTone.Risk
            }
            KestrinStatusPill {
                title: "Mobile app"
                tone: KestrinTone.Link
            }
            KestrinStatusPill {
                title: "Companion"
                tone: KestrinTone.Neutral
            }
            KestrinStatusPill {
                Layout.preferredWidth: 140
                title: "Shrinks to fit this"
                tone: KestrinTone.Link
            }
            KestrinStatusPill {
                Layout.preferredWidth: 110
                title: "Much too long for this"
                tone: KestrinTone.Risk
            }
            KestrinToggle {
                on: false
                Accessible.name: "Off"
            }
        }

        KestrinCard {
            Layout.fillWidth: true
            spacing: 10

            Field {
                width: parent.width
                symbol: "video.fill"
                tone: KestrinTone.Risk
                title: "Zoom"
                detail: "Video call / Microphone / Camera"
                status: "Keep closed"
            }
            KestrinDivider {
                width: parent.width
                inset: 40
            }
            Field {
                width: parent.width
                symbol: "globe"
                tone: KestrinTone.Neutral
                title: "Firefox"
                detail: "Browser"
                status: "Allow"
            }
            KestrinDivider {
                width: parent.width
                inset: 40
            }
            KestrinToggle {
                width: parent.width
                on: true

                label: KestrinText {
                    width: parent.width
                    text: "When enabled, Kestrin sends quit requests to selected Mac protected apps while Privacy Mode is on."
                    size: 12
                    color: KestrinColors.textSecondary
                }
            }
        }

        RowLayout {
            spacing: 18

            Repeater {
                model: [["Regular", KestrinWeight.Regular], ["Medium", KestrinWeight.Medium], ["Semibold", KestrinWeight.Semibold], ["Bold", KestrinWeight.Bold], ["Heavy", KestrinWeight.Heavy]]

                RowLayout {
                    id: sample

                    required property var modelData

                    spacing: 6

                    KestrinSymbol {
                        name: "laptopcomputer"
                        size: 18
                        weight: sample.modelData[1]
                        color: KestrinColors.textPrimary
                    }
                    KestrinText {
                        text: sample.modelData[0]
                        size: 18
                        weight: sample.modelData[1]
                    }
                }
            }
        }

        Grid {
            Layout.fillWidth: true
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

        Row {
            spacing: 12

            Repeater {
                model: ["house.fill", "rectangle.connected.to.line.below", "checkmark.shield.fill", "calendar", "list.bullet.rectangle", "key.fill", "link"]

                Row {
                    id: label

                    required property string modelData

                    spacing: 6

                    KestrinSymbol {
                        name: label.modelData
                        size: 13
                        weight: KestrinWeight.Semibold
                        color: KestrinColors.freshGreen
                    }
                    KestrinText {
                        text: "Section"
                        size: 13
                        weight: KestrinWeight.Semibold
                    }
                }
            }
        }
    }
}
