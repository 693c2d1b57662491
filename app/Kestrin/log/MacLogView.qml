import QtQuick
import Kestrin
import KestrinDesignSystem

// The log window: what is shown of the log, the log, and what can be done with it.
FocusScope {
    id: root

    required property MacLog log

    readonly property real margin: 20
    // What has become of an export.
    property string told: ""

    function clear() {
        search.text = "";
        log.clearFilters();
        search.forceActiveFocus();
    }

    width: parent?.width ?? 0
    height: parent?.height ?? 0
    focus: true

    Component.onCompleted: search.forceActiveFocus()

    Keys.onEscapePressed: {
        if (search.text !== "")
            search.text = "";
        else
            Window.window.close();
    }

    // Days may have other names by now.
    Connections {
        target: root.Window.window

        function onActiveChanged() {
            root.log.lookAtToday();
        }
    }

    Connections {
        target: root.log

        function onFilterChanged() {
            root.told = "";
        }
    }

    FocusScope {
        id: page

        width: parent.width
        height: parent.height
        enabled: !exportLoader.item
        focus: true

        MacSearchField {
            id: search

            x: root.margin
            y: root.margin
            width: kinds.x - x - 12
            placeholder: "Search the log"
            onTextChanged: root.log.search = text

            Keys.onDownPressed: list.forceActiveFocus()
            Keys.onReturnPressed: list.forceActiveFocus()
            Keys.onEnterPressed: list.forceActiveFocus()
        }

        MacLogFilter {
            id: kinds

            x: apps.x - width - 12
            y: root.margin
            width: 190
            page: page
            all: "All kinds"
            several: "kinds"
            titles: root.log.kindTitles
            chosen: root.log.kinds
            onToggled: place => root.log.toggleKind(place)
            onCleared: root.log.clearKinds()
        }

        MacLogFilter {
            id: apps

            x: parent.width - width - root.margin
            y: root.margin
            width: 190
            page: page
            all: "All applications"
            several: "applications"
            titles: root.log.appNames
            pictures: root.log.appPictures
            chosen: root.log.apps
            onToggled: place => root.log.toggleApp(place)
            onCleared: root.log.clearApps()
        }

        KestrinPanel {
            id: frame

            x: root.margin
            y: search.y + search.height + 12
            width: parent.width - 2 * x
            height: foot.y - y - 12
            radius: 12
            color: KestrinColors.surface

            MacLogList {
                id: list

                anchors.fill: parent
                anchors.margins: 6
                log: root.log
                visible: root.log.lines.count > 0
                onCopyWanted: root.log.copy()
            }

            Column {
                anchors.centerIn: parent
                width: Math.min(parent.width - 80, 460)
                spacing: 14
                visible: !list.visible

                KestrinSymbol {
                    anchors.horizontalCenter: parent.horizontalCenter
                    name: root.log.problem === "" ? "tray" : "exclamationmark.triangle.fill"
                    size: 30
                    color: root.log.problem === "" ? KestrinColors.textMuted : KestrinColors.attention
                }

                KestrinText {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    text: root.log.problem !== "" ? root.log.problem
                        : root.log.total === 0 ? "Nothing has happened yet. What Kestrin notices and does will stand here."
                                               : "No event is like that."
                    size: 14
                    weight: KestrinWeight.Semibold
                    color: KestrinColors.textSecondary
                }

                KestrinSecondaryButton {
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: 170
                    implicitHeight: 40
                    textSize: 14
                    visible: root.log.total > 0 && root.log.filtered
                    title: "Show All Events"
                    onClicked: root.clear()
                }
            }

            // What has come above what one reads.
            KestrinPressable {
                anchors.horizontalCenter: parent.horizontalCenter
                y: 6 + list.lineHeight + 8
                width: news.width
                height: 32
                visible: list.visible && list.newEvents > 0
                onClicked: {
                    list.scrollTo(0);
                    list.forceActiveFocus();
                }

                Accessible.name: news.text

                KestrinSurface {
                    anchors.fill: parent
                    shape: KestrinSurface.Capsule
                    color: KestrinColors.primaryAction
                }

                Row {
                    id: news

                    readonly property string text: list.newEvents + (list.newEvents === 1 ? " new event" : " new events")

                    height: parent.height
                    leftPadding: 14
                    rightPadding: 16
                    spacing: 8

                    KestrinSymbol {
                        anchors.verticalCenter: parent.verticalCenter
                        name: "arrow.up"
                        size: 12
                        weight: KestrinWeight.Bold
                        color: KestrinColors.primaryActionText
                    }

                    KestrinText {
                        anchors.verticalCenter: parent.verticalCenter
                        text: news.text
                        size: 13
                        weight: KestrinWeight.Semibold
                        color: KestrinColors.primaryActionText
                        silent: true
                    }
                }

                KestrinFocusRing {
                    targetRadius: 16
                }
            }
        }

        Item {
            id: foot

            x: root.margin
            y: parent.height - height - root.margin
            width: parent.width - 2 * x
            height: 40

            KestrinText {
                width: buttons.x - 16
                anchors.verticalCenter: parent.verticalCenter
                text: root.told !== "" ? root.told
                    : root.log.lines.selectedCount > 1 ? root.log.selection + ", " + root.log.summary
                                                       : root.log.summary
                size: 13
                color: KestrinColors.textSecondary
                lineLimit: 1
            }

            Row {
                id: buttons

                anchors.right: parent.right
                spacing: 12

                KestrinSecondaryButton {
                    width: 110
                    implicitHeight: 40
                    textSize: 14
                    title: "Copy"
                    systemImage: "doc.on.doc.fill"
                    enabled: root.log.lines.selectedCount > 0
                    opacity: enabled ? 1 : 0.45
                    onClicked: root.log.copy()
                }

                KestrinSecondaryButton {
                    id: exportButton

                    width: 110
                    implicitHeight: 40
                    textSize: 14
                    title: "Export…"
                    enabled: root.log.lines.count > 0
                    opacity: enabled ? 1 : 0.45
                    onClicked: exportLoader.setSource("MacLogExport.qml", {
                        "log": root.log
                    })
                }
            }
        }
    }

    // Over everything, as long as it is asked for.
    Loader {
        id: exportLoader

        width: parent.width
        height: parent.height
        focus: item !== null
        z: 1

        Connections {
            target: exportLoader.item
            ignoreUnknownSignals: true

            function onClosed() {
                root.told = (exportLoader.item as MacLogExport)?.done ?? "";
                exportLoader.source = "";
                exportButton.forceActiveFocus();
            }
        }
    }

    Shortcut {
        sequence: "Ctrl+F"
        onActivated: {
            if (!exportLoader.item)
                search.forceActiveFocus(Qt.ShortcutFocusReason);
        }
    }
    Shortcut {
        sequence: "Ctrl+W"
        onActivated: root.Window.window.close()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: Qt.quit()
    }
}
