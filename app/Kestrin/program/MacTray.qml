import Qt.labs.platform
import Kestrin

// The icon in the desktop's tray, for as long as there is one.
SystemTrayIcon {
    id: root

    required property MacProtectionState protection
    required property TrayCommands commands

    readonly property MacLiveUse use: protection.liveUse
    readonly property bool isPaused: protection.pauseText !== ""
    readonly property string state: isPaused ? protection.pauseText
        : protection.privacyModeOn ? "Privacy Mode is on" : "Privacy Mode is off"

    visible: true
    icon.source: "qrc:/kestrin/KestrinTray" + (protection.privacyModeOn ? "On" : "Off")
        + (use.text !== "" ? "InUse" : "") + ".png"
    tooltip: "Kestrin: " + state + (use.text === "" ? "" : "\n" + use.text)
        + (protection.sightText === "" ? "" : "\n" + protection.sightText)
    // A second click of the middle or right button is the menu's.
    onActivated: reason => {
        if (reason === SystemTrayIcon.Trigger || reason === SystemTrayIcon.DoubleClick)
            commands.openWindow();
    }

    // A line about an application, whose name has no letters for the keyboard. Of one "&" each menu makes such a letter.
    component UseItem: MenuItem {
        required property string line

        text: (line.includes("&") ? "&" : "") + line.replace(/_/g, "__")
        visible: line !== ""
        enabled: false
    }

    menu: Menu {
        onAboutToShow: root.commands.refresh()

        MenuItem {
            text: root.state
            enabled: false
        }
        UseItem {
            line: root.use.lines[0] ?? ""
        }
        UseItem {
            line: root.use.lines[1] ?? ""
        }
        UseItem {
            line: root.use.lines[2] ?? ""
        }
        UseItem {
            line: root.use.lines[3] ?? ""
        }
        UseItem {
            line: root.use.lines[4] ?? ""
        }
        UseItem {
            line: root.use.lines[5] ?? ""
        }
        MenuSeparator {}
        MenuItem {
            text: "Privacy Mode"
            checkable: true
            checked: root.protection.privacyModeOn
            onTriggered: root.protection.privacyModeOn = !root.protection.privacyModeOn
        }
        MenuItem {
            text: "Pause for an hour"
            visible: !root.isPaused
            enabled: root.protection.privacyModeOn
            onTriggered: root.protection.pauseForAnHour()
        }
        MenuItem {
            text: "Pause until tomorrow"
            visible: !root.isPaused
            enabled: root.protection.privacyModeOn
            onTriggered: root.protection.pauseUntilTomorrow()
        }
        MenuItem {
            text: "Resume"
            visible: root.isPaused
            onTriggered: root.protection.privacyModeOn = true
        }
        MenuItem {
            text: "Run Check"
            onTriggered: root.protection.runLiveCheck()
        }
        MenuItem {
            text: "Watch Microphone, Camera and Screen"
            checkable: true
            checked: root.use.on
            onTriggered: root.use.on = !root.use.on
        }
        MenuSeparator {}
        MenuItem {
            text: "Open Kestrin"
            onTriggered: root.commands.openWindow()
        }
        MenuItem {
            text: "Open the Log"
            onTriggered: root.commands.openLog()
        }
        MenuItem {
            text: "Start at Login"
            checkable: true
            checked: root.commands.startsAtLogin
            onTriggered: root.commands.startsAtLogin = !root.commands.startsAtLogin
        }
        MenuItem {
            text: "Keep Protecting When Closed"
            checkable: true
            checked: root.commands.staysWhenClosed
            onTriggered: root.commands.staysWhenClosed = !root.commands.staysWhenClosed
        }
        MenuSeparator {}
        MenuItem {
            text: "Quit Kestrin"
            onTriggered: root.commands.quit()
        }
    }
}
