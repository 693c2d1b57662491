import QtQuick
import Kestrin
import KestrinDesignSystem

// Adds an application of the user's own: which one, what it can do, and what is done about it.
MacDialog {
    id: root

    required property MacProtectionState protection

    readonly property MacOwnApps apps: protection.ownApps
    readonly property int keepClosed: 2

    // One that was seen to use something, if it is about that one.
    property string seenName: ""
    property string seenIdentifier: ""

    property string candidate: ""
    property string seen: ""
    property var categories: []
    property int action: keepClosed
    property string problem: ""

    function toggleCategory(category: int) {
        categories = categories.includes(category) ? categories.filter(other => other !== category)
                                                   : categories.concat([category]);
    }

    function add() {
        if (candidate === "")
            return;
        problem = apps.add(candidate, categories, action);
        if (problem === "")
            closed();
    }

    title: "Add an App"
    explanation: "It is protected at once, and stands behind the others in the list."
    boxWidth: 820
    boxHeight: 580

    Component.onCompleted: {
        problem = apps.look();
        if (seenName !== "") {
            seen = apps.putFirst(seenName, seenIdentifier);
            candidate = seen;
        }
        if (candidate === "") {
            search.forceActiveFocus();
        } else {
            list.currentIndex = 0;
            list.forceActiveFocus();
        }
    }

    MacSearchField {
        id: search

        x: root.margin
        y: root.contentTop
        width: 420
        placeholder: "Search applications"
        onTextChanged: root.apps.search = text

        Keys.onDownPressed: list.forceActiveFocus()
        Keys.onReturnPressed: root.add()
        Keys.onEnterPressed: root.add()
    }

    KestrinPanel {
        id: frame

        anchors.left: search.left
        anchors.right: search.right
        anchors.top: search.bottom
        anchors.topMargin: 10
        anchors.bottom: buttons.top
        anchors.bottomMargin: 18
        radius: 10
        color: KestrinColors.surface

        ListView {
            id: list

            anchors.fill: parent
            anchors.margins: 6
            clip: true
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            model: root.apps.candidates
            currentIndex: -1

            Accessible.role: Accessible.List
            Accessible.name: "Applications"

            function choose(row: int) {
                currentIndex = row;
                root.candidate = (currentItem as MacCandidateRow)?.identifier ?? "";
            }

            onActiveFocusChanged: {
                if (activeFocus && currentIndex < 0 && count > 0)
                    choose(0);
            }

            Keys.onUpPressed: choose(Math.max(currentIndex - 1, 0))
            Keys.onDownPressed: choose(Math.min(currentIndex + 1, count - 1))
            Keys.onReturnPressed: root.add()
            Keys.onEnterPressed: root.add()

            delegate: MacCandidateRow {
                id: row

                selected: row.identifier === root.candidate // qmllint disable unqualified
                onChosen: list.choose(row.index) // qmllint disable unqualified
            }
        }

        // Another search, another list: what was chosen may not be in it.
        Connections {
            target: root.apps

            function onSearchChanged() {
                list.choose(-1);
            }
        }

        KestrinText {
            anchors.centerIn: parent
            visible: list.count === 0
            text: "No application fits."
            size: 13
            color: KestrinColors.textSecondary
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

        KestrinFocusRing {
            target: list
        }
    }

    Column {
        id: choices

        anchors.left: search.right
        anchors.leftMargin: 24
        anchors.right: parent.right
        anchors.rightMargin: root.margin
        anchors.top: search.top
        spacing: 12

        KestrinText {
            text: "What it can do"
            size: 15
            weight: KestrinWeight.Bold
            heading: true
        }

        Flow {
            width: parent.width
            spacing: 8

            Repeater {
                model: root.apps.categoryLabels

                MacChoice {
                    id: category

                    required property int index
                    required property string modelData

                    title: modelData
                    on: root.categories.includes(index) // qmllint disable unqualified
                    onClicked: root.toggleCategory(category.index) // qmllint disable unqualified
                }
            }
        }

        Item {
            width: 1
            height: 4
        }

        KestrinText {
            text: "What Privacy Mode does"
            size: 15
            weight: KestrinWeight.Bold
            heading: true
        }

        Flow {
            width: parent.width
            spacing: 8

            Repeater {
                model: root.apps.actionLabels

                MacChoice {
                    id: actionChoice

                    required property int index
                    required property string modelData

                    exclusive: true
                    title: modelData
                    on: root.action === index // qmllint disable unqualified
                    onClicked: root.action = actionChoice.index // qmllint disable unqualified
                }
            }
        }

        KestrinText {
            width: parent.width
            text: root.action === 0 ? "It is only reported, and never asked to quit."
                                    : "It is asked to quit by a check, and whenever it is started."
            size: 12
            color: KestrinColors.textSecondary
        }

        KestrinText {
            width: parent.width
            visible: root.candidate !== "" && root.candidate === root.seen && root.action !== 0
                && !root.apps.isRunning(root.seen)
            text: "It has no window at the moment. Kestrin can only ask it while it has one."
            size: 12
            weight: KestrinWeight.Semibold
            color: KestrinColors.textSecondary
        }

        KestrinText {
            width: parent.width
            visible: text !== ""
            text: root.problem
            size: 12
            weight: KestrinWeight.Semibold
            color: KestrinColors.risk

            Accessible.role: Accessible.AlertMessage
        }
    }

    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: root.margin
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 22
        spacing: 12

        KestrinSecondaryButton {
            width: 130
            title: "Cancel"
            onClicked: root.closed()
        }

        KestrinPrimaryButton {
            width: 130
            title: "Add"
            enabled: root.candidate !== ""
            opacity: enabled ? 1 : 0.45
            onClicked: root.add()
        }
    }
}
