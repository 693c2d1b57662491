import QtQuick
import KestrinDesignSystem

// The alternative action. Takes the width that it is given.
KestrinButton {
    implicitHeight: 50
    textSize: 18
    textWeight: KestrinWeight.Bold
    foreground: KestrinColors.deepGreen
    background: KestrinColors.surface
    strokeColor: KestrinColors.border
    strokeWidth: 1.5
}
