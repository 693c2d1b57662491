import QtQuick
import Kestrin
import KestrinDesignSystem

// The sidebar and the page of the selected section. A page lives as long as it is shown.
Item {
    id: root

    required property MacProtectionState protection
    property int selectedSection: MacSection.Home

    // In the order of the sections.
    readonly property list<url> pages: ["MacHomeView.qml", "MacDevicesView.qml", "MacAppsView.qml",
        "MacScheduleView.qml", "MacActivityView.qml", "MacAccessView.qml", "MacConnectView.qml"]

    // No anchors here, nor in what all pages are made of: they take effect only when everything is complete, and
    // until then every text would be laid out in no room at all.
    width: parent?.width ?? 0
    height: parent?.height ?? 0

    // Where the keyboard was when the dialog came.
    property Item placeBeforeDialog: null
    // What is asked for while the first start is explained comes after it, and the other way round.
    property var openNextDialog: null

    function openDialog(from: Item) {
        placeBeforeDialog = from;
        dialog.setSource("MacAddAppDialog.qml", {
            "protection": root.protection
        });
    }

    // Somebody wants an application that was seen to be protected.
    function protectApp(name: string, identifier: string, categories: var) {
        if (dialog.item && !(dialog.item as MacAddAppDialog)) {
            openNextDialog = () => protectApp(name, identifier, categories);
            return;
        }
        placeBeforeDialog = placeBeforeDialog ?? Window.activeFocusItem;
        dialog.setSource("MacAddAppDialog.qml", {
            "protection": root.protection,
            "seenName": name,
            "seenIdentifier": identifier,
            "categories": Array.from(categories)
        });
    }

    function explainFirstStart(commands: TrayCommands) {
        if (dialog.item) {
            openNextDialog = () => explainFirstStart(commands);
            return;
        }
        dialog.setSource("MacFirstStartDialog.qml", {
            "protection": root.protection,
            "commands": commands
        });
    }

    function closeDialog() {
        dialog.source = "";
        placeBeforeDialog?.forceActiveFocus();
        placeBeforeDialog = null;
        const openNext = openNextDialog;
        openNextDialog = null;
        if (openNext)
            openNext();
    }

    function select(section: int) {
        // Before the page goes, and the keyboard's place with it.
        if (detail.activeFocus || sidebar.activeFocus)
            sidebar.takeFocus(section);
        selectedSection = section;
    }

    onSelectedSectionChanged: detail.show(selectedSection)

    Component.onCompleted: {
        // What this changes is not to be laid out twice.
        protection.start();
        detail.show(selectedSection);
    }

    MacSidebar {
        id: sidebar

        width: 210
        height: parent.height
        protection: root.protection
        enabled: !dialog.item
        selectedSection: root.selectedSection
        onChosen: section => root.select(section)
    }

    Rectangle {
        id: edge

        x: sidebar.width
        width: 1
        height: parent.height
        color: KestrinColors.divider
    }

    FocusScope {
        id: detail

        x: edge.x + edge.width
        width: parent.width - x
        height: parent.height
        clip: true
        enabled: !dialog.item

        function show(section: int) {
            // Where nothing is selected, Home is shown.
            loader.setSource(root.pages[Math.max(section, MacSection.Home)], {
                "protection": root.protection
            });
        }

        // Where it has nothing to say nobody waits for it to be made.
        Loader {
            id: quietLine

            readonly property bool isWanted: root.protection.sightText !== "" || root.protection.selectedCount === 0
                || root.protection.pauseText !== "" || root.protection.liveUse.sentences !== ""

            property real heightBefore: 0

            function tellMove() {
                (loader.item as MacPage)?.takeMove(height - heightBefore);
                heightBefore = height;
            }

            // What is scrolled goes below it.
            z: 1
            width: parent.width
            height: (item as Item)?.height ?? 0
            onHeightChanged: Qt.callLater(tellMove) // qmllint disable
            onIsWantedChanged: {
                if (isWanted)
                    setSource("MacQuietLine.qml", {
                        "protection": root.protection
                    });
                else
                    source = "";
            }
        }

        Loader {
            id: loader

            y: quietLine.height
            width: parent.width
            height: parent.height - y
        }

        Connections {
            target: loader.item
            ignoreUnknownSignals: true

            function onChosen(section: int) {
                root.select(section);
            }

            function onAddWanted(from: Item) {
                root.openDialog(from);
            }
        }
    }

    // Over everything, as long as it is asked for.
    Loader {
        id: dialog

        width: parent.width
        height: parent.height
        focus: item !== null
        z: 1

        Connections {
            target: dialog.item
            ignoreUnknownSignals: true

            function onClosed() {
                root.closeDialog();
            }
        }
    }

    MacKeys {
        sections: root.protection.sections
        onChosen: section => {
            if (!dialog.item)
                root.select(section);
        }
        onLogWanted: root.protection.openLog()
    }
}
