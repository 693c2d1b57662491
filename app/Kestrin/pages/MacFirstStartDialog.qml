import QtQuick
import Kestrin
import KestrinDesignSystem

// Tells a new user in a few steps what Kestrin does of itself, and lets him choose. What he does not choose stays.
MacDialog {
    id: root

    required property MacProtectionState protection
    required property TrayCommands commands

    // Who could not find it again has no use for one that starts without a window.
    readonly property int steps: commands.hasWayBack ? 3 : 2
    readonly property bool isLast: step === steps - 1

    property int step: 0
    property bool enforce: protection.enforceActions

    function go(to: int) {
        // Which sends the first requests, so it is not done by every look at the other option.
        if (step === 0 && enforce !== protection.enforceActions)
            protection.enforceActions = enforce;
        if (to < steps)
            step = to;
        else
            closed();
    }

    title: ["What should Kestrin do?", "When is Privacy Mode on?", "Should Kestrin start at login?"][step]
    explanation: (step === 0 ? "Welcome to Kestrin. " : "") + "Step " + (step + 1) + " of " + steps
        + "; all of it can be changed later."
    boxWidth: 848
    boxHeight: Math.max(440, choices.y + choices.height + 24 + buttons.height + 22)

    onStepChanged: next.forceActiveFocus()
    Component.onCompleted: next.forceActiveFocus()

    KestrinText {
        id: lead

        x: root.margin
        y: root.contentTop
        width: parent.width - 2 * x
        text: [
            "Privacy Mode is for the times when nobody is to listen, watch or record. While it is on, Kestrin notices "
            + "the applications that can, and does one of two things.",
            root.protection.scheduleText + " Schedules win: what you switch by hand they set again within a minute.",
            "Kestrin protects only while it is running."
        ][root.step]
        size: 14
    }

    Column {
        id: choices

        x: root.margin
        y: lead.y + lead.height + 16
        width: parent.width - 2 * x

        Column {
            visible: root.step === 0
            width: parent.width
            spacing: 12

            MacOption {
                width: parent.width
                icon: "eye.fill"
                title: "Preview"
                detail: "Kestrin tells what it would do, and asks no application to quit."
                on: !root.enforce
                onClicked: root.enforce = false
            }

            MacOption {
                width: parent.width
                icon: "hand.raised.fill"
                title: "Quit requests"
                detail: "Kestrin asks them politely to quit: those that run as soon as you go on, others when they "
                    + "are started. They may save, ask you, or refuse. Browsers are only reported."
                on: root.enforce
                onClicked: root.enforce = true
            }
        }

        Grid {
            visible: root.step === 1
            width: parent.width
            columns: 2
            columnSpacing: 24
            rowSpacing: 4
            verticalItemAlignment: Grid.AlignVCenter

            Repeater {
                model: root.protection.presets

                MacScheduleCard {
                    id: card

                    // Those that are on, also when they are switched off here.
                    property bool isShown: false

                    visible: isShown
                    width: (parent.width - 24) / 2
                    onFlipped: on => root.protection.setPreset(card.identifier, on) // qmllint disable unqualified
                    Component.onCompleted: isShown = on
                }
            }
        }

        Column {
            visible: root.step === 2
            width: parent.width
            spacing: 12

            MacOption {
                width: parent.width
                icon: "macwindow"
                title: "When you open it"
                detail: "Nothing is watched, and no schedule switches, before you do."
                on: !root.commands.startsAtLogin
                onClicked: root.commands.startsAtLogin = false
            }

            MacOption {
                width: parent.width
                icon: "clock.fill"
                title: "At login"
                detail: "It protects from then on, without a window. "
                    + (root.commands.hasTray ? "Its icon in the tray brings the window."
                                             : "Opening Kestrin once more brings the window.")
                on: root.commands.startsAtLogin
                onClicked: root.commands.startsAtLogin = true
            }
        }
    }

    KestrinSecondaryButton {
        x: root.margin
        anchors.verticalCenter: buttons.verticalCenter
        width: 130
        visible: !root.isLast
        title: "Skip"
        onClicked: root.closed()
    }

    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: root.margin
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 22
        spacing: 12

        KestrinSecondaryButton {
            anchors.verticalCenter: parent.verticalCenter
            width: 130
            visible: root.step > 0
            title: "Back"
            onClicked: root.go(root.step - 1)
        }

        KestrinPrimaryButton {
            id: next

            width: 130
            title: root.isLast ? "Done" : "Next"
            onClicked: root.go(root.step + 1)

            // Who hears the window is told what the step is about: the keyboard's place stays.
            Accessible.description: root.title + " " + lead.text
        }
    }
}
