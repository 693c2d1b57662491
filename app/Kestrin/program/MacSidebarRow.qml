import QtQuick
import KestrinDesignSystem

// A section in the sidebar.
Item {
    id: root

    required property int index
    required property string title
    required property string icon
    required property bool selected

    signal chosen
    signal deselected
    signal moved(steps: int)

    implicitHeight: 32

    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.focusable: true
    Accessible.onPressAction: chosen()

    Keys.onUpPressed: moved(-1)
    Keys.onDownPressed: moved(1)
    Keys.onSpacePressed: chosen()
    Keys.onReturnPressed: chosen()
    Keys.onEnterPressed: chosen()

    KestrinSurface {
        anchors.fill: parent
        radius: 8
        visible: root.selected || pointer.containsMouse
        color: Qt.alpha(KestrinColors.freshGreen, root.selected ? 0.16 : 0.07)
    }

    KestrinSymbol {
        id: symbol

        anchors.verticalCenter: parent.verticalCenter
        x: 8
        width: 22
        name: root.icon
        size: 13
        weight: KestrinWeight.Semibold
        color: KestrinColors.freshGreen
    }

    KestrinText {
        anchors.verticalCenter: parent.verticalCenter
        x: symbol.x + symbol.width + 8
        width: parent.width - x - 8
        text: root.title
        size: 13
        weight: KestrinWeight.Semibold
        lineLimit: 1
        silent: true
    }

    KestrinFocusRing {
        targetRadius: 8
    }

    MouseArea {
        id: pointer

        anchors.fill: parent
        hoverEnabled: true
        onClicked: mouse => mouse.modifiers & Qt.ControlModifier && root.selected ? root.deselected() : root.chosen()
    }
}
