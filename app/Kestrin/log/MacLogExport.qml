import QtQuick
import Kestrin
import KestrinDesignSystem

// Asks which events go into a file, in which form, and into which one. It lies over the whole window, which does nothing
// meanwhile.
FocusScope {
    id: root

    required property MacLog log

    readonly property int selectedCount: log.lines.selectedCount
    property bool onlySelected: selectedCount > 1
    property int format: 3
    property string problem: ""

    // With a sentence about what was done.
    signal closed(done: string)

    function chooseFormat(format: int) {
        // A name of one's own stays, whatever is behind it.
        if (file.text === log.suggestedFile(root.format))
            file.text = log.suggestedFile(format);
        root.format = format;
    }

    function save() {
        problem = log.exportTo(file.text, format, onlySelected);
        if (problem === "")
            closed("Saved as " + file.text);
    }

    width: parent?.width ?? 0
    height: parent?.height ?? 0
    focus: true

    Accessible.role: Accessible.Dialog
    Accessible.name: "Export"

    Keys.onEscapePressed: closed("")

    Component.onCompleted: {
        file.text = log.suggestedFile(format);
        file.forceActiveFocus();
    }

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.4)

        // What is below is not to be reached.
        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            onWheel: wheel => wheel.accepted = true
        }
    }

    KestrinPanel {
        anchors.fill: box
        radius: 14
        color: KestrinColors.softIvory
    }

    Item {
        id: box

        readonly property real margin: 24

        anchors.centerIn: parent
        width: 600
        height: content.height + 2 * margin

        Column {
            id: content

            x: box.margin
            y: box.margin
            width: parent.width - 2 * x
            spacing: 14

            KestrinText {
                width: parent.width
                text: "Export"
                size: 22
                weight: KestrinWeight.Bold
                heading: true
            }

            Flow {
                width: parent.width
                spacing: 8
                visible: root.selectedCount > 0

                MacChoice {
                    exclusive: true
                    title: "All that are shown"
                    on: !root.onlySelected
                    onClicked: root.onlySelected = false
                }

                MacChoice {
                    exclusive: true
                    title: root.selectedCount === 1 ? "The selected one" : "The " + root.selectedCount + " selected"
                    on: root.onlySelected
                    onClicked: root.onlySelected = true
                }
            }

            Flow {
                width: parent.width
                spacing: 8

                Repeater {
                    model: root.log.formats

                    MacChoice {
                        id: choice

                        required property int index
                        required property string modelData

                        exclusive: true
                        title: modelData
                        on: root.format === index // qmllint disable unqualified
                        onClicked: root.chooseFormat(choice.index) // qmllint disable unqualified
                    }
                }
            }

            MacSearchField {
                id: file

                width: parent.width
                searches: false
                placeholder: "File"
                onTextChanged: root.problem = ""

                Keys.onReturnPressed: root.save()
                Keys.onEnterPressed: root.save()
            }

            KestrinText {
                width: parent.width
                text: root.problem !== "" ? root.problem
                    : root.log.isThere(file.text) ? "A file of that name is there, and will be replaced."
                                                  : "Only you will be able to read it."
                size: 12
                weight: root.problem !== "" ? KestrinWeight.Semibold : KestrinWeight.Regular
                color: root.problem !== "" ? KestrinColors.risk : KestrinColors.textSecondary
            }

            Row {
                anchors.right: parent.right
                spacing: 12

                KestrinSecondaryButton {
                    width: 130
                    title: "Cancel"
                    onClicked: root.closed("")
                }

                KestrinPrimaryButton {
                    width: 130
                    title: "Export"
                    enabled: file.text.trim() !== ""
                    opacity: enabled ? 1 : 0.45
                    onClicked: root.save()
                }
            }
        }
    }
}
