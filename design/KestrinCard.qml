import QtQuick
import QtQuick.Layouts
import KestrinDesignSystem

// The panel that holds most of a page. Its content lies in a column and should fill its width
// (`Layout.fillWidth: true`).
Item {
    id: root

    default property alias content: column.data

    implicitWidth: column.implicitWidth + 2 * column.anchors.margins
    implicitHeight: column.implicitHeight + 2 * column.anchors.margins

    KestrinSurface {
        anchors.fill: parent
        radius: 14
        color: KestrinColors.surface
        strokeColor: KestrinColors.border
        strokeWidth: 1
        shadowColor: Qt.rgba(0, 0, 0, 0.035)
        shadowBlur: 16
        shadowOffset: 8
    }

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: 16
        spacing: 0
    }
}
