import QtQuick
import KestrinDesignSystem

// The press feedback of buttons: draws what is put into it, fainter and smaller while `pressed`.
Item {
    required property bool pressed

    component EaseOut: NumberAnimation {
        duration: KestrinAppearance.reducedMotion ? 0 : 160
        easing.type: Easing.BezierSpline
        easing.bezierCurve: [0, 0, 0.58, 1, 1, 1]
    }

    opacity: pressed ? 0.88 : 1
    scale: pressed ? 0.98 : 1

    Behavior on opacity {
        EaseOut {}
    }
    Behavior on scale {
        EaseOut {}
    }
}
