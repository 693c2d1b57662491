import QtQuick
import KestrinDesignSystem

// The open list of a filter. What is chosen holds at once; any press beside it closes it.
FocusScope {
    id: root

    // The button that it belongs to.
    required property Item button
    required property string all
    required property var titles
    required property var pictures
    required property list<int> chosen

    readonly property int lineHeight: 38

    signal toggled(place: int)
    signal cleared
    signal closed

    function choose(line: int) {
        if (line === 0)
            cleared();
        else
            toggled(line - 1);
    }

    focus: true

    Accessible.role: Accessible.PopupMenu
    Accessible.name: all

    Keys.onEscapePressed: closed()
    Keys.onTabPressed: closed()
    Keys.onBacktabPressed: closed()

    Component.onCompleted: list.forceActiveFocus()

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        onPressed: root.closed()
        onWheel: root.closed()
    }

    KestrinPanel {
        id: box

        // The button is in what this lies over.
        x: root.button.x + root.button.width - width
        y: root.button.y + root.button.height + 6
        width: Math.max(root.button.width, 250 * KestrinAppearance.textScale)
        height: Math.min(list.count * root.lineHeight + 12, root.height - y - 12)
        radius: 12
        color: KestrinColors.surface
        shadowColor: Qt.rgba(0, 0, 0, 0.22)
        shadowBlur: 18
        shadowOffset: 6

        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            onWheel: wheel => wheel.accepted = true
        }

        ListView {
            id: list

            anchors.fill: parent
            anchors.margins: 6
            clip: true
            focus: true
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            model: root.titles.length + 1

            Accessible.role: Accessible.List
            Accessible.name: root.all

            Keys.onSpacePressed: root.choose(currentIndex)
            Keys.onReturnPressed: root.choose(currentIndex)
            Keys.onEnterPressed: root.choose(currentIndex)
            Keys.onPressed: event => {
                event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
                if (event.accepted)
                    currentIndex = event.key === Qt.Key_Home ? 0 : count - 1;
            }

            delegate: Item {
                id: line

                required property int index

                readonly property int place: index - 1
                readonly property bool on: place < 0 ? root.chosen.length === 0 // qmllint disable unqualified
                                                     : root.chosen.includes(place) // qmllint disable unqualified
                readonly property string title: place < 0 ? root.all // qmllint disable unqualified
                                                          : root.titles[place] ?? "" // qmllint disable unqualified
                readonly property string picture: root.pictures[place] ?? "" // qmllint disable unqualified
                readonly property bool hasPictures: root.pictures.length > 0 // qmllint disable unqualified

                width: ListView.view?.width ?? 0
                height: root.lineHeight // qmllint disable unqualified

                Accessible.role: Accessible.CheckBox
                Accessible.name: title
                Accessible.checkable: true
                Accessible.checked: on
                Accessible.focusable: true
                Accessible.onToggleAction: root.choose(index) // qmllint disable unqualified
                Accessible.onPressAction: root.choose(index) // qmllint disable unqualified

                KestrinSurface {
                    anchors.fill: parent
                    radius: 8
                    visible: line.activeFocus || pointer.containsMouse
                    color: Qt.alpha(KestrinColors.freshGreen, line.activeFocus ? 0.16 : 0.07)
                }

                KestrinSymbol {
                    x: 8
                    width: 20
                    anchors.verticalCenter: parent.verticalCenter
                    visible: line.on
                    name: "checkmark"
                    size: 13
                    weight: KestrinWeight.Bold
                    color: KestrinColors.freshGreen
                }

                MacAppPicture {
                    x: 36
                    anchors.verticalCenter: parent.verticalCenter
                    width: 20
                    name: line.picture
                }

                KestrinText {
                    x: line.hasPictures && line.place >= 0 ? 66 : 36
                    width: parent.width - x - 12
                    anchors.verticalCenter: parent.verticalCenter
                    text: line.title
                    size: 13
                    weight: KestrinWeight.Semibold
                    lineLimit: 1
                    silent: true
                }

                MouseArea {
                    id: pointer

                    anchors.fill: parent
                    hoverEnabled: true
                    onClicked: root.choose(line.index) // qmllint disable unqualified
                }
            }
        }

        MacScrollBar {
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            anchors.margins: 2
            position: list.contentY - list.originY
            page: list.height
            extent: list.contentHeight
            onMoved: position => list.contentY = list.originY + Math.max(0, Math.min(position, list.contentHeight - list.height))
        }
    }
}
