import QtQuick
import KestrinDesignSystem

// A heading of a page, or another line of it: a text that fills the width, and what stands at the end.
Item {
    id: root

    property alias text: label.text
    property alias size: label.size
    property alias weight: label.weight
    property alias color: label.color
    property alias heading: label.heading
    property real spacing: 8

    default property alias end: trailing.data

    width: parent?.width ?? 0
    implicitHeight: Math.max(label.implicitHeight, trailing.implicitHeight)

    KestrinText {
        id: label

        anchors.left: parent.left
        anchors.right: trailing.left
        anchors.rightMargin: root.spacing
        anchors.verticalCenter: parent.verticalCenter
        visible: text !== ""
        size: 17
        weight: KestrinWeight.Bold
        heading: true
    }

    Row {
        id: trailing

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: root.spacing
    }
}
