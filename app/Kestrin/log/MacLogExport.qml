import QtQuick
import Kestrin
import KestrinDesignSystem

// Asks which events go into a file, in which form, and into which one.
MacDialog {
    id: root

    required property MacLog log

    readonly property int selectedCount: log.lines.selectedCount
    property bool onlySelected: selectedCount > 1
    property int format: 3
    property string problem: ""
    // What was done, as a sentence.
    property string done: ""

    function chooseFormat(format: int) {
        // A name of one's own stays, whatever is behind it.
        if (file.text === log.suggestedFile(root.format))
            file.text = log.suggestedFile(format);
        root.format = format;
    }

    function save() {
        problem = log.exportTo(file.text, format, onlySelected);
        if (problem !== "")
            return;
        done = "Saved as " + file.text;
        closed();
    }

    title: "Export"
    explanation: "Only you will be able to read the file."
    boxWidth: 600
    boxHeight: contentTop + content.height + margin

    Component.onCompleted: {
        file.text = log.suggestedFile(format);
        file.forceActiveFocus();
        log.lookForFileDialog();
    }

    Connections {
        target: root.log

        function onFileChosen(chosen: string) {
            file.text = chosen;
        }
    }

    Column {
        id: content

        x: root.margin
        y: root.contentTop
        width: parent.width - 2 * x
        spacing: 14

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

        Row {
            width: parent.width
            spacing: 12

            MacSearchField {
                id: file

                width: parent.width - (choose.visible ? choose.width + parent.spacing : 0)
                searches: false
                placeholder: "File"
                onTextChanged: root.problem = ""

                Keys.onReturnPressed: root.save()
                Keys.onEnterPressed: root.save()
            }

            KestrinSecondaryButton {
                id: choose

                width: 110
                implicitHeight: 40
                textSize: 14
                visible: root.log.hasFileDialog
                title: "Choose…"
                onClicked: root.log.chooseFile(file.text)
            }
        }

        KestrinText {
            width: parent.width
            text: root.problem !== "" ? root.problem
                : root.log.isThere(file.text) ? "A file of that name is there, and will be replaced."
                                              : "There is no file of that name yet."
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
                onClicked: root.closed()
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
