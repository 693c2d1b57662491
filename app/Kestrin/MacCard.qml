import QtQuick
import KestrinDesignSystem

// A card whose content lies in a column: as wide as the card, and as high as wrapped texts make it. Positioned by
// bindings, because nested layouts lose heights that change while they are being laid out.
KestrinCard {
    id: root

    default property alias rows: column.data
    property alias spacing: column.spacing

    implicitHeight: column.implicitHeight + 2 * column.y

    Column {
        id: column

        parent: root
        x: 16
        y: 16
        width: root.width - 2 * x
    }
}
