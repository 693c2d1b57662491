import QtQuick
import Kestrin
import KestrinDesignSystem

MacPage {
    id: root

    required property MacProtectionState protection

    title: "Apps"
    subtitle: "Choose Mac Protected Apps for Privacy Mode."

    signal addWanted(from: Item)

    // Once the page has been drawn, so that nobody waits for it as long as the check takes.
    Connections {
        id: appearance

        target: root.Window.window

        function onFrameSwapped() {
            appearance.enabled = false;
            root.protection.runLiveCheck();
        }
    }

    MacLiveCheckCard {
        width: parent.width
        protection: root.protection
        privacyModeOn: root.protection.privacyModeOn

        Connections {
            target: root.protection

            function onPrivacyModeOnChanged() {
                root.protection.updatePrivacyMode(root.protection.privacyModeOn);
                root.protection.runLiveCheck();
            }
        }
    }

    KestrinCard {
        width: parent.width
        spacing: 12

        MacLine {
            text: "Mac Protected Apps list"

            KestrinStatusPill {
                anchors.verticalCenter: parent.verticalCenter
                title: root.protection.selectedCount + " selected"
                tone: KestrinTone.Protected
            }
        }

        Column {
            id: list

            // Where it is looked at, by far less exact than a pixel.
            readonly property real sight: Math.floor(root.contentY / 1000) * 1000

            width: parent.width

            Repeater {
                model: root.protection.definitions

                // Whoever has added hundreds does not wait for those that are not in sight, neither when they come nor
                // when they go.
                Loader {
                    id: place

                    required property int index
                    required property string identifier
                    required property string title
                    required property string subtitle
                    required property string icon
                    required property int tone
                    required property string status
                    required property bool on
                    required property bool own

                    // What a row with one line is tall, until it is known.
                    property real usualHeight: 59

                    width: parent?.width ?? 0
                    height: (item as MacRiskDefinitionRow)?.implicitHeight ?? usualHeight
                    // Where it will be put.
                    y: index * usualHeight
                    asynchronous: index >= 14
                    onLoaded: usualHeight = height
                    // qmllint disable unqualified
                    active: Math.abs(y - list.sight) <= 4000 || activeFocus
                    sourceComponent: MacRiskDefinitionRow {
                        id: row

                        index: place.index
                        identifier: place.identifier
                        title: place.title
                        subtitle: place.subtitle
                        icon: place.icon
                        tone: place.tone
                        status: place.status
                        on: place.on
                        own: place.own
                        onFlipped: on => root.protection.setProtectedDefinition(identifier, on)
                        onRemoved: root.protection.ownApps.remove(identifier)
                        onMenuWanted: (x, y) => menu.open(row, x, y)
                    }
                    // qmllint enable unqualified
                }
            }
        }
    }

    MacLine {
        heading: false
        text: root.protection.selectedCount + " Mac protected apps selected"
        size: 13
        weight: KestrinWeight.Semibold
        color: KestrinColors.textSecondary
        spacing: 12

        KestrinSecondaryButton {
            anchors.verticalCenter: parent.verticalCenter
            width: 190
            title: "Apply Recommended"
            systemImage: "wand.and.stars"
            onClicked: root.protection.applyRecommendedRiskApps()
        }

        KestrinPrimaryButton {
            anchors.verticalCenter: parent.verticalCenter
            width: 150
            title: root.protection.enforceActions ? "Apply Now" : "Run Preview"
            systemImage: "shield.checkered"
            onClicked: root.protection.runLiveCheck()
        }
    }

    MacLine {
        heading: false
        text: root.protection.ownApps.removedName === "" ? "" : root.protection.ownApps.removedName + " was removed."
        size: 13
        weight: KestrinWeight.Semibold
        color: KestrinColors.textSecondary
        spacing: 12

        KestrinSecondaryButton {
            anchors.verticalCenter: parent.verticalCenter
            width: 120
            visible: root.protection.ownApps.removedName !== ""
            title: "Undo"
            onClicked: root.protection.ownApps.undoRemoval()
        }

        KestrinSecondaryButton {
            id: addButton

            anchors.verticalCenter: parent.verticalCenter
            width: 190
            title: "Add an App…"
            onClicked: root.addWanted(addButton)
        }
    }

    MacRowMenu {
        id: menu

        page: root
        onRemoveWanted: identifier => root.protection.ownApps.remove(identifier)
    }
}
