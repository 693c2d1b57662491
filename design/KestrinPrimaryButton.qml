import QtQuick
import KestrinDesignSystem

// The main call to action. Takes the width that it is given.
KestrinButton {
    implicitHeight: 52
    textSize: 19
    textWeight: KestrinWeight.Heavy
    foreground: KestrinColors.primaryActionText
    background: KestrinColors.primaryAction
}
