import QtQuick
import Kestrin
import KestrinDesignSystem

// The brand, the sections and what the engine does. The sections are one stop for the keyboard; arrows move in them.
FocusScope {
    id: root

    required property MacProtectionState protection
    required property int selectedSection

    signal chosen(section: int)

    // To the first section, where none is selected.
    function takeFocus(section: int) {
        rows.itemAt(Math.max(section, MacSection.Home)).forceActiveFocus(Qt.TabFocusReason);
    }

    function move(section: int) {
        if (section < 0 || section >= rows.count)
            return;
        takeFocus(section);
        chosen(section);
    }

    Rectangle {
        anchors.fill: parent
        color: Qt.alpha(KestrinColors.surface, 0.78)
    }

    MacSidebarBrand {
        id: brand

        x: 16
        y: 16
    }

    Column {
        x: 10
        y: brand.y + brand.height + 20
        width: parent.width - 2 * x
        spacing: 2

        Accessible.role: Accessible.List
        Accessible.name: "Sections"

        Repeater {
            id: rows

            model: root.protection.sections

            MacSidebarRow {
                id: row

                selected: row.index === root.selectedSection // qmllint disable unqualified
                // The first one, where nothing is selected.
                activeFocusOnTab: selected || row.index === 0 && root.selectedSection === MacSection.None // qmllint disable unqualified
                width: parent.width
                onChosen: root.chosen(row.index) // qmllint disable unqualified
                onDeselected: root.chosen(MacSection.None) // qmllint disable unqualified
                onMoved: steps => root.move(row.index + steps) // qmllint disable unqualified
            }
        }
    }

    KestrinCard {
        x: 12
        y: parent.height - height - 14
        width: parent.width - 2 * x

        Accessible.role: Accessible.StaticText
        Accessible.name: "Mac engine, " + root.protection.monitorLabel

        MacRow {
            icon: "laptopcomputer"
            iconColor: KestrinColors.freshGreen
            iconWeight: KestrinWeight.Regular
            title: "Mac engine"
            titleSize: 13
            titleWeight: KestrinWeight.Bold
            subtitle: root.protection.monitorLabel
        }
    }
}
