import QtQuick
import Kestrin
import KestrinDesignSystem

// The lines of the log. All of them are equally high, so that every place in a log of any length is known exactly. What
// one reads stays where it is when new events come above it.
FocusScope {
    id: root

    required property MacLog log

    readonly property LogLines lines: log.lines

    readonly property int lineHeight: Math.ceil(48 * Math.max(1, KestrinAppearance.textScale * 0.92))
    // How far down the log.
    readonly property real position: list.contentY - list.originY
    readonly property int topLine: Math.floor(position / lineHeight)
    // Since one scrolled down.
    property int newEvents: 0

    signal copyWanted

    // The name of a day goes out of sight, and not over what is above.
    clip: true

    function scrollTo(wanted: real) {
        const last = list.count * lineHeight - list.height;
        list.contentY = list.originY + Math.max(0, Math.min(Math.round(wanted), last));
        if (position <= 0)
            newEvents = 0;
    }

    function scrollBy(distance: real) {
        scrollTo(position + distance);
    }

    // Below the name of the day.
    function showLine(line: int) {
        const top = line * lineHeight;
        if (line <= 1)
            scrollTo(0);
        else if (top - lineHeight < position)
            scrollTo(top - lineHeight);
        else if (top + lineHeight > position + list.height)
            scrollTo(top + lineHeight - list.height);
    }

    function moveTo(line: int, shift: bool) {
        if (line < 0)
            return;
        list.currentIndex = line;
        if (shift)
            lines.extendTo(line);
        else
            lines.choose(line);
        showLine(line);
    }

    function move(steps: int, shift: bool) {
        // From what is in sight, where none was chosen.
        const from = list.currentIndex >= 0 ? list.currentIndex : topLine;
        moveTo(lines.eventFrom(from, list.currentIndex >= 0 || lines.isDay(from) ? steps : 0), shift);
    }

    function press(line: int, modifiers: int) {
        byMouse = true;
        list.forceActiveFocus(Qt.MouseFocusReason);
        list.currentIndex = line;
        if (modifiers & Qt.ShiftModifier)
            lines.extendTo(line);
        else if (modifiers & Qt.ControlModifier)
            lines.toggle(line);
        else
            lines.choose(line);
    }

    // The mouse does not show where the keyboard is.
    property bool byMouse: false

    readonly property int page: Math.max(1, Math.floor(list.height / lineHeight) - 2)

    Connections {
        target: root.log

        function onShown() {
            list.currentIndex = -1;
            list.forceLayout();
            root.newEvents = 0;
            root.scrollTo(0);
        }

        function onGrew(count: int) {
            const before = root.position;
            list.forceLayout();
            if (before > 0) {
                root.newEvents += 1;
                root.scrollTo(before + count * root.lineHeight);
            } else {
                root.scrollTo(0);
            }
        }
    }

    ListView {
        id: list

        anchors.fill: parent
        clip: true
        focus: true
        activeFocusOnTab: true
        // A mouse that drags does not scroll; the wheel, the scroll bar and a finger do.
        interactive: false
        reuseItems: true
        // Lines out of sight would be made between the frames, and some versions complain when these are not wanted any
        // more.
        cacheBuffer: 0
        highlightFollowsCurrentItem: false
        currentIndex: -1
        model: root.lines
        onHeightChanged: root.scrollBy(0)

        Accessible.role: Accessible.List
        Accessible.name: "Events"

        onActiveFocusChanged: {
            if (!activeFocus)
                root.byMouse = false;
            else if (currentIndex < 0)
                root.move(1, false);
        }

        Keys.onPressed: event => {
            const shift = (event.modifiers & Qt.ShiftModifier) !== 0;
            const control = (event.modifiers & Qt.ControlModifier) !== 0;
            root.byMouse = false;
            event.accepted = true;
            if (event.key === Qt.Key_Up)
                root.move(-1, shift);
            else if (event.key === Qt.Key_Down)
                root.move(1, shift);
            else if (event.key === Qt.Key_PageUp)
                root.move(-root.page, shift);
            else if (event.key === Qt.Key_PageDown)
                root.move(root.page, shift);
            else if (event.key === Qt.Key_Home)
                root.moveTo(root.lines.eventFrom(-1, 1), shift);
            else if (event.key === Qt.Key_End)
                root.moveTo(root.lines.eventFrom(-1, root.lines.count), shift);
            else if (event.key === Qt.Key_Space)
                root.lines.toggle(list.currentIndex);
            else if (event.key === Qt.Key_A && control)
                root.lines.selectAll();
            else if (event.key === Qt.Key_C && control)
                root.copyWanted();
            else
                event.accepted = false;
        }

        delegate: MacLogRow {
            height: root.lineHeight // qmllint disable unqualified
            timeWidth: sample.implicitWidth // qmllint disable unqualified
            showsFocus: !root.byMouse // qmllint disable unqualified
            onPressed: modifiers => root.press(index, modifiers) // qmllint disable unqualified
        }
    }

    // The name of the day that is read, until the next one pushes it away.
    Rectangle {
        width: list.width
        height: root.lineHeight
        visible: list.count > 0
        y: root.lines.count > root.topLine + 1 && root.lines.isDay(root.topLine + 1)
            ? root.topLine * root.lineHeight - root.position : 0
        color: KestrinColors.surface

        MacLogDay {
            anchors.fill: parent
            title: root.lines.count > 0 ? root.lines.dayAt(root.topLine) : ""
            count: root.lines.count > 0 ? root.lines.dayCountAt(root.topLine) : ""
        }
    }

    KestrinText {
        id: sample

        visible: false
        text: root.lines.widestTime()
        size: 12
        weight: KestrinWeight.Semibold
        silent: true
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        target: null
        onWheel: event => root.scrollBy(event.pixelDelta.y !== 0 ? -event.pixelDelta.y : -event.angleDelta.y)
    }

    DragHandler {
        property real start: 0

        acceptedDevices: PointerDevice.TouchScreen
        target: null
        onActiveChanged: start = root.position
        onTranslationChanged: if (active)
            root.scrollTo(start - translation.y)
    }

    MacScrollBar {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        position: root.position
        page: list.height
        extent: list.count * root.lineHeight
        onMoved: position => root.scrollTo(position)
    }
}
