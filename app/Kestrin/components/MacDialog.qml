import QtQuick
import KestrinDesignSystem

// What lies over the whole window, which does nothing meanwhile: a box with a heading, what it is about, and the content.
FocusScope {
    id: root

    required property string title
    required property string explanation
    required property real boxWidth
    required property real boxHeight
    default property alias content: box.data

    readonly property real margin: 24
    // Where the content begins.
    readonly property real contentTop: explanationText.y + explanationText.height + 16

    signal closed

    width: parent?.width ?? 0
    height: parent?.height ?? 0
    focus: true

    Accessible.role: Accessible.Dialog
    Accessible.name: title

    Keys.onEscapePressed: closed()

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.4)

        // What is below is not to be reached.
        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            onWheel: wheel => wheel.accepted = true
        }
    }

    KestrinPanel {
        anchors.fill: box
        radius: 14
        color: KestrinColors.softIvory
    }

    Item {
        id: box

        anchors.centerIn: parent
        width: root.boxWidth
        height: root.boxHeight

        KestrinText {
            id: heading

            x: root.margin
            y: 20
            width: parent.width - 2 * x
            text: root.title
            size: 22
            weight: KestrinWeight.Bold
            heading: true
        }

        KestrinText {
            id: explanationText

            x: root.margin
            anchors.top: heading.bottom
            anchors.topMargin: 4
            width: parent.width - 2 * x
            text: root.explanation
            size: 13
            color: KestrinColors.textSecondary
        }
    }
}
