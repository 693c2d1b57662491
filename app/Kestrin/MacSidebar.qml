import QtQuick
import QtQuick.Layouts
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

    ColumnLayout {
        anchors.fill: parent
        spacing: 20

        MacSidebarBrand {
            Layout.leftMargin: 16
            Layout.rightMargin: 16
            Layout.topMargin: 16
        }

        Column {
            Layout.fillWidth: true
            Layout.leftMargin: 10
            Layout.rightMargin: 10
            spacing: 2

            Accessible.role: Accessible.List
            Accessible.name: "Sections"

            Repeater {
                id: rows

                model: root.protection.sections

                MacSidebarRow {
                    id: row

                    selected: row.section === root.selectedSection // qmllint disable unqualified
                    // The first one, where nothing is selected.
                    activeFocusOnTab: selected || row.section === 0 && root.selectedSection === MacSection.None // qmllint disable unqualified
                    width: parent.width
                    onChosen: root.chosen(row.section) // qmllint disable unqualified
                    onDeselected: root.chosen(MacSection.None) // qmllint disable unqualified
                    onMoved: steps => root.move(row.section + steps) // qmllint disable unqualified
                }
            }
        }

        Item {
            Layout.fillHeight: true
        }

        KestrinCard {
            Layout.fillWidth: true
            Layout.leftMargin: 12
            Layout.rightMargin: 12
            Layout.bottomMargin: 14

            Accessible.role: Accessible.StaticText
            Accessible.name: "Mac engine, " + root.protection.monitorLabel

            RowLayout {
                width: parent.width
                spacing: 12

                KestrinSymbol {
                    name: "laptopcomputer"
                    color: KestrinColors.freshGreen
                }

                ColumnLayout {
                    spacing: 3

                    KestrinText {
                        Layout.fillWidth: true
                        text: "Mac engine"
                        size: 13
                        weight: KestrinWeight.Bold
                        silent: true
                    }

                    KestrinText {
                        Layout.fillWidth: true
                        text: root.protection.monitorLabel
                        size: 11
                        color: KestrinColors.textSecondary
                        silent: true
                    }
                }
            }
        }
    }
}
