import QtQuick
import KestrinDesignSystem

// The press feedback of buttons: draws what is put into it, fainter and smaller while `pressed`.
Item {
    id: root

    required property bool pressed

    readonly property int duration: KestrinAppearance.reducedMotion ? 0 : 160
    readonly property var easeOut: [0, 0, 0.58, 1, 1, 1]

    opacity: pressed ? 0.88 : 1
    scale: pressed ? 0.98 : 1

    Behavior on opacity {
        NumberAnimation {
            duration: root.duration
            easing.type: Easing.BezierSpline
            easing.bezierCurve: root.easeOut
        }
    }
    Behavior on scale {
        NumberAnimation {
            duration: root.duration
            easing.type: Easing.BezierSpline
            easing.bezierCurve: root.easeOut
        }
    }
}
