import QtQuick
import KestrinDesignSystem

// A row of a list: a symbol in a column of its own, texts below each other, and what stands at the end. The texts fill
// the width between; the tallest of the three decides the height.
Item {
    id: root

    required property string icon
    required property color iconColor
    property real iconColumn: symbol.implicitWidth
    property real iconSize: 13
    property int iconWeight: KestrinWeight.Regular
    property real margin: 0
    property real padding: 0
    property alias textSpacing: texts.spacing
    property alias trailingSpacing: trailing.spacing

    default property alias content: texts.data
    property alias end: trailing.data

    readonly property real spacing: 12

    implicitHeight: Math.max(symbol.implicitHeight, texts.implicitHeight, trailing.implicitHeight) + 2 * padding

    KestrinSymbol {
        id: symbol

        anchors.verticalCenter: parent.verticalCenter
        x: root.margin
        width: root.iconColumn
        name: root.icon
        size: root.iconSize
        weight: root.iconWeight
        color: root.iconColor
    }

    Column {
        id: texts

        x: symbol.x + symbol.width + root.spacing
        width: trailing.x - x - (trailing.width > 0 ? root.spacing : 0)
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3
    }

    Row {
        id: trailing

        x: parent.width - width - root.margin
        anchors.verticalCenter: parent.verticalCenter
        spacing: root.spacing
    }
}
