import QtQuick
import Kestrin
import KestrinDesignSystem

// A button that says what is shown, and opens the list of what can be chosen. Where nothing is chosen all is shown.
KestrinPressable {
    id: root

    // What the open list lies over.
    required property Item page
    required property string all
    required property string several
    required property var titles
    required property list<int> chosen
    property var pictures: []

    signal toggled(place: int)
    signal cleared

    readonly property string shown: chosen.length === 0 ? all
        : chosen.length === 1 ? titles[chosen[0]] : chosen.length + " " + several

    function close() {
        if (!menu.item)
            return;
        menu.active = false;
        forceActiveFocus();
    }

    implicitHeight: 40

    Accessible.role: Accessible.ButtonMenu
    Accessible.name: shown
    Accessible.description: "Chooses what is shown"

    onClicked: menu.active = true
    Keys.onDownPressed: menu.active = true

    KestrinPanel {
        anchors.fill: parent
        radius: 10
        color: root.chosen.length > 0 ? KestrinColors.softGreen : KestrinColors.surface
        strokeColor: root.chosen.length > 0 ? KestrinColors.freshGreen
                                            : KestrinAppearance.highContrast ? KestrinColors.textMuted : KestrinColors.border
    }

    KestrinText {
        x: 14
        width: chevron.x - x - 8
        anchors.verticalCenter: parent.verticalCenter
        text: root.shown
        size: 14
        weight: KestrinWeight.Semibold
        color: root.chosen.length > 0 ? KestrinColors.freshGreen : KestrinColors.textPrimary
        lineLimit: 1
        silent: true
    }

    KestrinSymbol {
        id: chevron

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron.down"
        size: 12
        weight: KestrinWeight.Bold
        color: root.chosen.length > 0 ? KestrinColors.freshGreen : KestrinColors.textSecondary
    }

    KestrinFocusRing {}

    Loader {
        id: menu

        parent: root.page
        width: root.page.width
        height: root.page.height
        z: 1
        active: false
        // qmllint disable unqualified
        sourceComponent: MacLogMenu {
            button: root
            all: root.all
            titles: root.titles
            pictures: root.pictures
            chosen: root.chosen
            onToggled: place => root.toggled(place)
            onCleared: root.cleared()
            onClosed: root.close()
        }
        // qmllint enable unqualified
    }
}
