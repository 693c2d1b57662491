import QtQuick
import KestrinDesignSystem

// What both buttons are: a row of an optional icon and the title, centred on a ground. The look comes from
// KestrinPrimaryButton and KestrinSecondaryButton.
KestrinPressable {
    id: root

    required property string title
    property string systemImage: ""

    required property real textSize
    required property int textWeight
    required property color foreground
    required property color background
    property color strokeColor: "transparent"
    property real strokeWidth: 0

    // What the title leaves free at both ends: the least of it is for titles that have shrunk as far as they may.
    readonly property real margin: 10
    readonly property real leastMargin: 4

    implicitWidth: row.naturalWidth + 2 * margin

    Accessible.name: title

    KestrinPressableButtonStyle {
        anchors.fill: parent
        pressed: root.pressed

        KestrinSurface {
            anchors.fill: parent
            radius: 10
            color: root.background
            strokeColor: root.strokeColor
            strokeWidth: root.strokeWidth
            scales: true
        }

        Row {
            id: row

            readonly property real iconWidth: icon.visible ? icon.implicitWidth + spacing : 0
            readonly property real naturalWidth: iconWidth + label.implicitWidth
            readonly property real room: root.width - iconWidth

            anchors.centerIn: parent
            spacing: 8

            KestrinSymbol {
                id: icon

                anchors.verticalCenter: parent.verticalCenter
                visible: root.systemImage !== ""
                name: root.systemImage
                size: root.textSize
                weight: root.textWeight
                color: root.foreground
            }

            KestrinText {
                id: label

                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, Math.max(row.room - 2 * root.margin,
                                                        Math.min(row.room - 2 * root.leastMargin,
                                                                 leastWidth)))
                text: root.title
                size: root.textSize
                weight: root.textWeight
                color: root.foreground
                lineLimit: 1
                minimumScale: 0.82
                silent: true
            }
        }
    }

    KestrinFocusRing {}
}
