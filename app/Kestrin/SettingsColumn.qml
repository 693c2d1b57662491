import QtQuick
import QtQuick.Layouts
import KestrinDesignSystem

// A titled card of rows.
KestrinCard {
    id: root

    required property string title
    default property alias rows: column.data

    ColumnLayout {
        id: column

        Layout.fillWidth: true
        spacing: 12

        KestrinText {
            Layout.fillWidth: true
            text: root.title
            size: 17
            weight: KestrinWeight.Bold
            heading: true
        }
    }
}
