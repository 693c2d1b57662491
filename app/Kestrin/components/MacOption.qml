import QtQuick
import KestrinDesignSystem

// One of several ways, told in a sentence: it shows `on` and asks by `clicked`. Only one of them is on.
KestrinPressable {
    id: root

    required property string icon
    required property string title
    required property string detail
    required property bool on

    readonly property real padding: 16

    implicitHeight: texts.implicitHeight + 2 * padding

    Accessible.role: Accessible.RadioButton
    Accessible.name: title
    Accessible.description: detail
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.onToggleAction: clicked()

    KestrinSurface {
        anchors.fill: parent
        radius: 10
        color: root.on ? KestrinColors.softGreen : KestrinColors.surface
        strokeColor: root.on ? KestrinColors.freshGreen : KestrinColors.border
        strokeWidth: root.on ? 2 : 1.5
    }

    KestrinSymbol {
        id: symbol

        x: root.padding
        anchors.verticalCenter: parent.verticalCenter
        width: 26
        name: root.icon
        size: 19
        weight: KestrinWeight.Semibold
        color: root.on ? KestrinColors.freshGreen : KestrinColors.textSecondary
    }

    Column {
        id: texts

        x: symbol.x + symbol.width + 14
        width: mark.x - x - 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        KestrinText {
            width: parent.width
            text: root.title
            size: 15
            weight: KestrinWeight.Bold
            silent: true
        }

        KestrinText {
            width: parent.width
            text: root.detail
            size: 13
            // On the green ground grey would be too faint.
            color: root.on ? KestrinColors.textPrimary : KestrinColors.textSecondary
            silent: true
        }
    }

    KestrinSymbol {
        id: mark

        x: parent.width - width - root.padding
        anchors.verticalCenter: parent.verticalCenter
        visible: root.on
        name: "checkmark.circle.fill"
        size: 19
        weight: KestrinWeight.Semibold
        color: KestrinColors.freshGreen
    }

    KestrinFocusRing {}
}
