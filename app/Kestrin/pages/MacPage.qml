import QtQuick
import KestrinDesignSystem

// The frame of every page: a title, a subtitle and the content below, which scrolls.
Rectangle {
    id: root

    required property string title
    required property string subtitle
    default property alias content: column.data

    readonly property Item focusItem: Window.activeFocusItem
    readonly property alias contentY: view.contentY

    // Where somebody scrolled to. There may be too little room for it at the moment.
    property real wantedY: 0

    function scrollTo(y: real) {
        wantedY = Math.max(0, Math.min(y, view.contentHeight - view.height));
        view.contentY = wantedY;
    }

    function fit() {
        view.contentY = Math.max(0, Math.min(wantedY, view.contentHeight - view.height));
    }

    // The page itself was moved down. What is read further down stays where it is.
    function takeMove(distance: real) {
        if (wantedY > 0)
            scrollTo(wantedY + distance);
    }

    function scrollBy(distance: real) {
        scrollTo(view.contentY + distance);
    }

    // Where the keyboard is can always be seen.
    function show(item: Item) {
        const room = 12;
        const top = item.mapToItem(column, 0, 0).y + column.y;
        const bottom = top + item.height;
        if (top - room < view.contentY)
            scrollTo(top - room);
        else if (bottom + room > view.contentY + view.height)
            scrollTo(bottom + room - view.height);
    }

    color: KestrinColors.warmIvory

    onFocusItemChanged: {
        for (let item = focusItem; item; item = item.parent) {
            if (item === column) {
                show(focusItem);
                return;
            }
        }
    }

    Keys.onUpPressed: scrollBy(-40)
    Keys.onDownPressed: scrollBy(40)

    Flickable {
        id: view

        width: parent.width
        height: parent.height
        // A mouse that drags does not scroll; the wheel, the scroll bar and a finger do.
        interactive: false
        contentWidth: width
        contentHeight: column.implicitHeight + 26 + 34
        onHeightChanged: root.fit()
        onContentHeightChanged: root.fit()

        Column {
            id: column

            x: 28
            y: 26
            width: view.width - 2 * x
            spacing: 18

            Column {
                // Without the header's spacing and the least of the free room beside it.
                width: parent.width - 24 - 24
                spacing: 6

                KestrinText {
                    width: parent.width
                    text: root.title
                    size: 30
                    weight: KestrinWeight.Bold
                    lineLimit: 1
                    minimumScale: 0.82
                    heading: true
                }

                KestrinText {
                    width: parent.width
                    text: root.subtitle
                    size: 14
                    color: KestrinColors.textSecondary
                }
            }
        }
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        target: null
        onWheel: event => root.scrollBy(event.pixelDelta.y !== 0 ? -event.pixelDelta.y : -event.angleDelta.y / 2)
    }

    DragHandler {
        property real start: 0

        acceptedDevices: PointerDevice.TouchScreen
        target: null
        onActiveChanged: start = view.contentY
        onTranslationChanged: if (active)
            root.scrollTo(start - translation.y)
    }

    MacScrollBar {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        position: view.contentY
        page: view.height
        extent: view.contentHeight
        onMoved: position => root.scrollTo(position)
    }

    Shortcut {
        sequence: "PgUp"
        onActivated: root.scrollBy(-view.height * 0.9)
    }
    Shortcut {
        sequence: "PgDown"
        onActivated: root.scrollBy(view.height * 0.9)
    }
    Shortcut {
        sequence: "Ctrl+Home"
        onActivated: root.scrollTo(0)
    }
    Shortcut {
        sequence: "Ctrl+End"
        onActivated: root.scrollTo(view.contentHeight)
    }
}
