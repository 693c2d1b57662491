import QtQuick
import KestrinDesignSystem

// A line of the log: an event, with the picture of its application, or the name of a day.
Item {
    id: root

    required property int index
    required property bool isDay
    required property string title
    required property string message
    required property string kind
    required property string time
    required property string symbol
    required property int tone
    required property string picture
    required property bool selected

    // Whether it says where the keyboard is.
    property bool showsFocus: true

    // The room of the times, so that they stand below each other.
    required property real timeWidth

    signal pressed(modifiers: int)

    width: ListView.view?.width ?? 0

    Accessible.role: isDay ? Accessible.Heading : Accessible.ListItem
    Accessible.name: isDay ? title + ", " + time : time + ", " + title + (kind === "" ? "" : ", " + kind) + ", " + message
    Accessible.selectable: !isDay
    Accessible.selected: selected
    Accessible.focusable: !isDay
    Accessible.onPressAction: pressed(0)

    MacLogDay {
        anchors.fill: parent
        visible: root.isDay
        title: root.isDay ? root.title : ""
        count: root.isDay ? root.time : ""
    }

    Item {
        anchors.fill: parent
        visible: !root.isDay

        KestrinSurface {
            anchors.fill: parent
            anchors.margins: 1
            radius: 8
            visible: root.selected || pointer.containsMouse
            color: Qt.alpha(KestrinColors.freshGreen, root.selected ? 0.16 : 0.07)
        }

        MacAppPicture {
            id: picture

            x: 12
            anchors.verticalCenter: parent.verticalCenter
            width: 28
            name: root.picture
        }

        KestrinSymbol {
            x: 12
            width: 28
            anchors.verticalCenter: parent.verticalCenter
            visible: !picture.isThere
            name: root.isDay ? "scope" : root.symbol
            size: 16
            weight: KestrinWeight.Semibold
            color: KestrinTones.color(root.tone)
        }

        Column {
            x: 52
            width: kindLabel.x - x - 12
            anchors.verticalCenter: parent.verticalCenter
            spacing: 1

            KestrinText {
                width: parent.width
                text: root.isDay ? "" : root.title
                size: 13
                weight: KestrinWeight.Semibold
                lineLimit: 1
                silent: true
            }

            KestrinText {
                width: parent.width
                text: root.message
                size: 12
                color: KestrinColors.textSecondary
                lineLimit: 1
                silent: true
            }
        }

        KestrinText {
            id: kindLabel

            anchors.right: parent.right
            anchors.rightMargin: 14 + root.timeWidth + 16
            anchors.verticalCenter: parent.verticalCenter
            text: root.kind
            size: 12
            weight: KestrinWeight.Semibold
            color: KestrinTones.color(root.tone)
            silent: true
        }

        KestrinText {
            id: timeLabel

            anchors.right: parent.right
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            text: root.isDay ? "" : root.time
            size: 12
            weight: KestrinWeight.Semibold
            color: KestrinColors.textSecondary
            silent: true
        }

        MouseArea {
            id: pointer

            anchors.fill: parent
            hoverEnabled: true
            onPressed: mouse => root.pressed(mouse.modifiers)
        }
    }

    KestrinFocusRing {
        anchors.margins: 0
        target: root
        visible: root.activeFocus && root.showsFocus
    }
}
