import QtQuick
import KestrinDesignSystem

// Shows which part of a page is seen, and moves it. Lengths are those of the page.
Item {
    id: root

    required property real position
    required property real page
    required property real extent

    signal moved(position: real)

    readonly property real range: extent - page
    readonly property real track: height - thumb.height

    width: 12
    // For a few points it would only be in the way.
    visible: range > 4

    KestrinSurface {
        id: thumb

        x: 3
        y: root.range > 0 ? root.position / root.range * root.track : 0
        width: 6
        height: Math.max(36, root.height * root.page / Math.max(root.extent, 1))
        shape: KestrinSurface.Capsule
        color: Qt.alpha(KestrinColors.textMuted, pointer.containsMouse || pointer.pressed ? 0.9 : 0.5)
    }

    MouseArea {
        id: pointer

        // Where the thumb is held.
        property real hold: 0

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onPressed: mouse => {
            const onThumb = mouse.y >= thumb.y && mouse.y <= thumb.y + thumb.height;
            hold = onThumb ? mouse.y - thumb.y : thumb.height / 2;
            root.moved((mouse.y - hold) / root.track * root.range);
        }
        onPositionChanged: mouse => {
            if (pressed)
                root.moved((mouse.y - hold) / root.track * root.range);
        }
    }
}
