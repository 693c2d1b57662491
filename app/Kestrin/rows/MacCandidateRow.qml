import QtQuick
import KestrinDesignSystem

// An application that could be added, with its own picture.
Item {
    id: root

    required property int index
    required property string identifier
    required property string title
    required property string subtitle
    required property string status
    required property string icon
    required property int tone
    property bool selected: false

    signal chosen

    width: ListView.view?.width ?? 0
    implicitHeight: 48

    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.description: status === "" ? subtitle : status + ", " + subtitle
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: chosen()

    KestrinSurface {
        anchors.fill: parent
        radius: 8
        visible: root.selected || pointer.containsMouse
        color: Qt.alpha(KestrinColors.freshGreen, root.selected ? 0.16 : 0.07)
    }

    MacAppPicture {
        id: picture

        x: 10
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        name: root.icon
    }

    KestrinSymbol {
        x: 10
        width: 28
        anchors.verticalCenter: parent.verticalCenter
        visible: !picture.isThere
        name: "macwindow"
        size: 17
        weight: KestrinWeight.Semibold
        color: KestrinColors.textSecondary
    }

    Column {
        x: 50
        width: (running.visible ? running.x : parent.width) - x - 10
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        KestrinText {
            width: parent.width
            text: root.title
            size: 13
            weight: KestrinWeight.Semibold
            lineLimit: 1
            silent: true
        }

        KestrinText {
            width: parent.width
            visible: text !== ""
            text: root.subtitle
            size: 11
            color: KestrinColors.textSecondary
            lineLimit: 1
            silent: true
        }
    }

    KestrinText {
        id: running

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        visible: text !== ""
        text: root.status
        size: 12
        weight: KestrinWeight.Semibold
        color: KestrinTones.color(root.tone)
        silent: true
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.chosen()
    }
}
