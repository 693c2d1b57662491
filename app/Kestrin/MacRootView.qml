import QtQuick
import Kestrin
import KestrinDesignSystem

// The sidebar and the page of the selected section. A page lives as long as it is shown.
Item {
    id: root

    required property MacProtectionState protection
    property int selectedSection: MacSection.Home

    readonly property list<Component> pages: [home, devices, apps, schedule, activity, access, connect]

    function select(section: int) {
        // Before the page goes, and the keyboard's place with it.
        if (detail.activeFocus || sidebar.activeFocus)
            sidebar.takeFocus(section);
        selectedSection = section;
    }

    Component.onCompleted: protection.start()

    MacSidebar {
        id: sidebar

        anchors.left: parent.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: 210
        protection: root.protection
        selectedSection: root.selectedSection
        onChosen: section => root.select(section)
    }

    Rectangle {
        id: edge

        anchors.left: sidebar.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: 1
        color: KestrinColors.divider
    }

    FocusScope {
        id: detail

        anchors.left: edge.right
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        clip: true

        Loader {
            anchors.fill: parent
            sourceComponent: root.pages[Math.max(root.selectedSection, MacSection.Home)]
        }
    }

    Component {
        id: home

        MacHomeView {
            protection: root.protection // qmllint disable unqualified
            onChosen: section => root.select(section) // qmllint disable unqualified
        }
    }
    Component {
        id: devices

        MacDevicesView {
            protection: root.protection // qmllint disable unqualified
            onChosen: section => root.select(section) // qmllint disable unqualified
        }
    }
    Component {
        id: apps

        MacAppsView {
            protection: root.protection // qmllint disable unqualified
        }
    }
    Component {
        id: schedule

        MacScheduleView {
            protection: root.protection // qmllint disable unqualified
        }
    }
    Component {
        id: activity

        MacActivityView {
            protection: root.protection // qmllint disable unqualified
        }
    }
    Component {
        id: access

        MacAccessView {
            protection: root.protection // qmllint disable unqualified
            onChosen: section => root.select(section) // qmllint disable unqualified
        }
    }
    Component {
        id: connect

        MacConnectView {
            protection: root.protection // qmllint disable unqualified
        }
    }

    Repeater {
        model: root.protection.sections

        Item {
            id: key

            required property int section

            Shortcut {
                sequence: "Ctrl+" + (key.section + 1)
                onActivated: root.select(key.section) // qmllint disable unqualified
            }
        }
    }

    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: Qt.quit()
    }
}
