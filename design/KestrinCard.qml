import QtQuick
import KestrinDesignSystem

// The panel that holds most of a page. Its content lies in a column that is as wide as the card and as high as
// wrapped texts make it. Positioned by bindings, because nested layouts lose heights that change while they are
// being laid out.
Item {
    id: root

    default property alias content: column.data
    property alias spacing: column.spacing

    readonly property real padding: 16

    implicitWidth: column.implicitWidth + 2 * padding
    implicitHeight: column.implicitHeight + 2 * padding

    KestrinPanel {
        anchors.fill: parent
        radius: 14
        color: KestrinColors.surface
        shadowColor: Qt.rgba(0, 0, 0, 0.035)
        shadowBlur: 16
        shadowOffset: 8
    }

    Column {
        id: column

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
    }
}
