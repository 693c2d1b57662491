import QtQuick
import KestrinDesignSystem

// A line to type in, with a word in it as long as it is empty.
FocusScope {
    id: root

    required property string placeholder
    property alias text: input.text
    property bool searches: true

    implicitHeight: 40

    KestrinPanel {
        anchors.fill: parent
        radius: 10
    }

    KestrinText {
        x: 14
        anchors.verticalCenter: parent.verticalCenter
        visible: input.text === "" && input.preeditText === ""
        text: root.placeholder
        size: 14
        color: KestrinColors.textSecondary
        silent: true
    }

    TextInput {
        id: input

        x: 14
        width: parent.width - 2 * x
        anchors.verticalCenter: parent.verticalCenter
        clip: true
        focus: true
        activeFocusOnTab: true
        selectByMouse: true
        font: sample.fittedFont
        color: KestrinColors.textPrimary
        selectionColor: KestrinColors.link
        selectedTextColor: KestrinColors.surface

        Accessible.role: Accessible.EditableText
        Accessible.name: root.placeholder
        Accessible.searchEdit: root.searches
    }

    // Knows the font of texts of this size.
    KestrinText {
        id: sample

        visible: false
        size: 14
        text: ""
        silent: true
    }

    KestrinFocusRing {
        target: input
    }
}
