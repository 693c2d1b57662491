import QtQuick
import Kestrin
import KestrinDesignSystem

// What can be done with a row of the user's own: one button where the row was pressed. Any other press closes it.
Item {
    id: root

    // Over all of which it lies, whatever it stands in.
    required property Item page

    property MacRiskDefinitionRow row: null

    signal removeWanted(identifier: string)

    function open(at: MacRiskDefinitionRow, x: real, y: real) {
        const place = at.mapToItem(page, x, y);
        button.x = Math.min(place.x, page.width - button.width - 8);
        button.y = Math.min(place.y, page.height - button.height - 8);
        row = at;
        button.forceActiveFocus();
    }

    function close() {
        if (!row)
            return;
        const at = row;
        row = null;
        at.nextItemInFocusChain()?.forceActiveFocus();
    }

    visible: row !== null
    width: page.width
    height: page.height
    z: 1

    Component.onCompleted: parent = page

    Keys.onEscapePressed: close()

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        onPressed: root.close()
        onWheel: root.close()
    }

    KestrinSecondaryButton {
        id: button

        width: 150
        implicitHeight: 40
        textSize: 14
        title: "Remove"
        onActiveFocusChanged: {
            if (!activeFocus)
                root.row = null;
        }
        onClicked: {
            const identifier = root.row.identifier;
            root.row = null;
            root.removeWanted(identifier);
        }
    }
}
