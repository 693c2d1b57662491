import QtQuick
import Kestrin
import KestrinDesignSystem

// The sidebar and the page of the selected section. A page lives as long as it is shown.
Item {
    id: root

    required property MacProtectionState protection
    property int selectedSection: MacSection.Home

    // Behind Home, in the order of the sections.
    readonly property list<url> otherPages: ["MacDevicesView.qml", "MacAppsView.qml", "MacScheduleView.qml",
        "MacActivityView.qml", "MacAccessView.qml", "MacConnectView.qml"]
    // They are read once Home is seen, and before somebody has chosen one of them.
    property var descriptions: []

    function select(section: int) {
        // Before the page goes, and the keyboard's place with it.
        if (detail.activeFocus || sidebar.activeFocus)
            sidebar.takeFocus(section);
        selectedSection = section;
    }

    onSelectedSectionChanged: detail.show(selectedSection)

    Component.onCompleted: protection.start()

    Connections {
        target: root.descriptions.length === 0 ? root.Window.window : null

        function onFrameSwapped() {
            root.descriptions = Array.from(root.otherPages, page => Qt.createComponent(page, Component.Asynchronous));
        }
    }

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

        function show(section: int) {
            if (section > MacSection.Home)
                loader.setSource(root.otherPages[section - 1], {
                    "protection": root.protection
                });
            else
                loader.sourceComponent = home;
        }

        Component {
            id: home

            MacHomeView {
                protection: root.protection // qmllint disable unqualified
            }
        }

        Loader {
            id: loader

            anchors.fill: parent
            sourceComponent: home
        }

        Connections {
            target: loader.item
            ignoreUnknownSignals: true

            function onChosen(section: int) {
                root.select(section);
            }
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
