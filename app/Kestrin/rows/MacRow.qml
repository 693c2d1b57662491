import QtQuick
import KestrinDesignSystem

// A row of a list, as wide as what it is in: a symbol in a column of its own, a title and a subtitle below each other,
// and what stands at the end. The texts fill the width between; the tallest of the three decides the height. The row
// that it makes up says what it shows.
Item {
    id: root

    required property string icon
    required property string title
    property string subtitle: ""
    property int tone: KestrinTone.Neutral

    property color iconColor: KestrinTones.color(tone)
    property real iconColumn: symbol.implicitWidth
    property real iconSize: 13
    property int iconWeight: KestrinWeight.Semibold
    property real titleSize: 14
    property int titleWeight: KestrinWeight.Semibold
    property int subtitleLines: 0
    property real margin: 0
    property real padding: 0
    // A line above it, which leaves out so much on the leading side.
    property bool divided: false
    property real inset: 0

    property alias end: trailing.data

    readonly property real spacing: 12

    width: parent?.width ?? 0
    implicitHeight: divider.height + Math.max(symbol.implicitHeight, texts.implicitHeight, trailing.implicitHeight) + 2 * padding

    KestrinDivider {
        id: divider

        width: parent.width
        height: root.divided ? implicitHeight : 0
        inset: root.inset
    }

    Item {
        y: divider.height
        width: parent.width
        height: parent.height - y

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

            KestrinText {
                width: parent.width
                text: root.title
                size: root.titleSize
                weight: root.titleWeight
                silent: true
            }

            KestrinText {
                width: parent.width
                visible: text !== ""
                text: root.subtitle
                size: root.titleSize - 2
                color: KestrinColors.textSecondary
                lineLimit: root.subtitleLines
                silent: true
            }
        }

        Row {
            id: trailing

            x: parent.width - width - root.margin
            anchors.verticalCenter: parent.verticalCenter
            spacing: root.spacing
        }
    }
}
