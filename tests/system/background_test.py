"""The program in the background: one instance, the icon in the tray and its menu, and notices of the desktop.

The tray and the notices' server are the test's own. Runs in tools/with-desktop, like window_test.
"""

import json
import os
import pathlib
import subprocess
import tempfile
import threading
import time
import unittest

from gi.repository import Gio, GLib

from programs import LIMIT, kestrinctl, output, wait
from window_test import InstalledApp, Program, becomes_active, move_to, press

WATCHER = "org.kde.StatusNotifierWatcher"
NOTICES = "org.freedesktop.Notifications"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"

INTERFACES = Gio.DBusNodeInfo.new_for_xml(f"""<node>
<interface name="{WATCHER}">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
</interface>
<interface name="{NOTICES}">
  <method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
    <arg type="a{{sv}}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/></method>
  <method name="GetServerInformation"><arg type="s" direction="out"/><arg type="s" direction="out"/>
    <arg type="s" direction="out"/><arg type="s" direction="out"/></method>
</interface>
</node>""").interfaces


class Service:
    """A name on the session bus with one object behind it."""

    read = None  # where it has no properties

    def __init__(self, number, path):
        self.interface = INTERFACES[number]
        self.path = path
        self.bus = Gio.DBusConnection.new_for_address_sync(
            os.environ["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self.bus.register_object(path, self.interface, self.called, self.read, None)
        Gio.bus_own_name_on_connection(self.bus, self.interface.name, Gio.BusNameOwnerFlags.NONE, None, None)

    def end(self):
        if not self.bus.is_closed():
            self.bus.close_sync()


class Tray(Service):
    """A panel that shows one icon. It comes a little later than its watcher."""

    def __init__(self):
        self.item = None
        self.is_shown = False
        super().__init__(0, "/StatusNotifierWatcher")

    def read(self, *_):
        was_shown, self.is_shown = self.is_shown, True
        if not was_shown:
            self.bus.emit_signal(None, self.path, WATCHER, "StatusNotifierHostRegistered", None)
        return GLib.Variant("b", was_shown)

    def called(self, _bus, sender, _path, _interface, _method, _arguments, invocation):
        self.item = sender
        invocation.return_value(None)

    def ask(self, path, interface, method, arguments):
        return self.bus.call_sync(self.item, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                  LIMIT * 1000, None).unpack()

    def icon(self, name):
        return self.ask("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                        GLib.Variant("(ss)", (ITEM, name)))[0]

    def says(self, phrase):
        return phrase in self.icon("ToolTip")[2]

    def menu(self):
        """By label of what is shown: the number, and whether it is checked."""
        _, (_, _, items) = self.ask(self.icon("Menu"), MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, [])))
        return {item[1]["label"].replace("_", ""): (item[0], item[1].get("toggle-state") == 1)
                for item in items if "label" in item[1] and item[1].get("visible", True)}

    def choose(self, label):
        event = (self.menu()[label][0], "clicked", GLib.Variant("i", 0), 0)
        self.ask(self.icon("Menu"), MENU, "Event", GLib.Variant("(isvu)", event))


class Notices(Service):
    """Shows nothing and remembers everything."""

    def __init__(self):
        self.shown = []
        self.server = ("notices", "0.1")
        super().__init__(1, "/org/freedesktop/Notifications")

    def called(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        if method == "GetServerInformation":
            name, version = self.server
            invocation.return_value(GLib.Variant("(ssss)", (name, "nobody", version, "1.2")))
            return
        self.shown.append(arguments.unpack())
        invocation.return_value(GLib.Variant("(u)", (len(self.shown),)))

    def click(self, number, title=None):
        """The notice itself, or one of its buttons. To be done until it helps: the program may not have heard yet
        which number its notice got, which no person is quick enough for. What is accepted is accepted once."""
        actions = self.shown[number - 1][5]
        action = actions[actions.index(title) - 1] if title else "default"
        self.bus.emit_signal(None, self.path, NOTICES, "ActionInvoked", GLib.Variant("(us)", (number, action)))


class Kestrin(Program):
    """And its windows are seen from outside."""

    def has_window(self, title="Kestrin"):
        return any(line.split(maxsplit=3)[-1].startswith(title) for line in output("wmctrl", "-l").splitlines())

    def wait_for_window(self):
        wait("The window is not there.", self.has_window)

    def show_again(self):
        output(os.environ["KESTRIN"])
        self.wait_for_window()

    def close_window(self):
        output("wmctrl", "-F", "-c", "Kestrin")
        wait("The window is still there.", lambda: not self.has_window())

    def close_and_answer(self, *keys):
        self.close_window()
        becomes_active("Keep protecting")
        press(*keys)
        wait("It asks on.", lambda: not self.has_window("Keep protecting"))


class BackgroundTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        os.environ["QT_QPA_PLATFORM"] = "xcb"
        pathlib.Path(os.environ["KESTRIN_DESKTOP_SHARE"], "applications").mkdir(parents=True, exist_ok=True)
        # So that the time of day decides nothing.
        kestrinctl("schedule", "disable", "sleep", "away", "focus")

    def setUp(self):
        kestrinctl("on")
        kestrinctl("enforce", "off")
        self.remember()
        self.notices = Notices()
        self.addCleanup(self.notices.end)

    @staticmethod
    def remember(**answers):
        """What was answered and told once; nothing else of it."""
        file = pathlib.Path(os.environ["XDG_CONFIG_HOME"], "Kestrin", "user-defaults.json")
        values = json.loads(file.read_text())
        for name in ("staysWhenClosed", "endOfProtectionTold"):
            values.pop("kestrin.mac." + name, None)
        values |= {"kestrin.mac." + name: value for name, value in answers.items()}
        file.write_text(json.dumps(values))

    def start(self, *options):
        kestrin = Kestrin(*options)
        self.addCleanup(lambda: self.assertEqual(kestrin.complaints(), ""))
        self.addCleanup(kestrin.end)
        return kestrin

    def tray(self):
        tray = Tray()
        self.addCleanup(tray.end)
        wait("No icon comes to the tray.", lambda: tray.item)
        return tray

    def test_icon_tells_and_steers(self):
        kestrin = self.start("--background")
        tray = self.tray()
        self.assertFalse(kestrin.has_window())
        self.assertTrue(tray.says("Privacy Mode is on"))
        self.assertTrue(tray.menu()["Privacy Mode"][1])
        on = tray.icon("IconPixmap")
        tray.choose("Privacy Mode")
        wait("The icon does not tell that Privacy Mode is off.",
             lambda: tray.says("Privacy Mode is off") and not tray.menu()["Privacy Mode"][1])
        self.assertNotEqual(tray.icon("IconPixmap"), on)
        self.assertIn('"privacyModeOn":false', kestrinctl("status", "--json").replace(" ", ""))
        kestrinctl("on")
        wait("The icon does not follow another program.", lambda: tray.menu()["Privacy Mode"][1])
        tray.choose("Run Check")
        wait("The menu does not check.", lambda: "Evaluating" in kestrinctl("log", "--limit", "1"))
        tray.choose("Start at Login")
        wait("The menu does not choose start at login.",
             lambda: kestrinctl("autostart") == "Kestrin starts at login.\n" and tray.menu()["Start at Login"][1])
        tray.choose("Quit Kestrin")
        self.assertEqual(kestrin.process.wait(LIMIT), 0)

    def test_a_pause_is_told_and_ends(self):
        self.start("--background")
        tray = self.tray()
        tray.choose("Pause for an hour")
        wait("The icon does not tell of the pause.", lambda: tray.says("Privacy Mode is paused until "))
        self.assertIn("Paused until ", kestrinctl("status"))
        self.assertNotIn("Pause until tomorrow", tray.menu())
        tray.choose("Resume")
        wait("The menu does not resume.", lambda: "Pause for an hour" in tray.menu())
        tray.choose("Pause until tomorrow")
        wait("The menu does not pause again.", lambda: tray.says("Privacy Mode is paused until tomorrow"))
        kestrinctl("pause", "2s")
        wait("The pause does not end.", lambda: tray.says("Privacy Mode is on") and tray.menu()["Privacy Mode"][1])

    def test_a_schedule_that_switches_says_so(self):
        self.addCleanup(lambda: (kestrinctl("schedule", "disable", "away"), os.environ.pop("TZ")))
        for number, (hour, before, switched, offer, after) in enumerate([
                (12, "off", "Schedule turned Privacy Mode on.", "Keep it off", "off"),
                (20, "on", "Schedule turned Privacy Mode off.", "Keep it on", "on")]):
            move_to(hour)
            kestrinctl("schedule", "enable", "away")
            kestrinctl(before)
            kestrin = self.start("--background")
            notice = wait("There is no notice.", lambda n=number: self.notices.shown[n:])[0]
            self.assertEqual((notice[3], notice[5][2:], notice[6]["transient"]), (switched, ["accept", offer], False))
            wait("It is not kept.", lambda n=number + 1: self.notices.click(n, offer)
                 or f"Privacy Mode is {after} " in kestrinctl("log", "--limit", "1"))
            self.assertIn("Away Mode disabled.", kestrinctl("log", "--limit", "2"))
            self.assertEqual(kestrinctl("schedule").splitlines()[-1], "* enabled; now the schedules want nothing.")
            kestrin.end()
        self.assertEqual(len(self.notices.shown), 2)

    def test_closed_window_leaves_a_way_back(self):
        self.remember(staysWhenClosed=True)
        kestrin = self.start("--background")
        tray = self.tray()
        tray.choose("Open Kestrin")
        kestrin.wait_for_window()
        kestrin.close_window()
        kestrin.show_again()
        kestrin.close_window()
        output(os.environ["KESTRIN"], "--background")
        self.assertFalse(kestrin.has_window())
        # Panels are started anew now and then.
        tray.end()
        tray = self.tray()
        tray.ask("/StatusNotifierItem", ITEM, "Activate", GLib.Variant("(ii)", (0, 0)))
        kestrin.wait_for_window()
        tray.end()
        wait("The way back is still counted on.", lambda: self.closes_for_good(kestrin))

    def test_the_log_needs_no_other_window(self):
        kestrin = self.start("--background")
        tray = self.tray()
        for _ in range(2):
            tray.choose("Open the Log")
            wait("The log does not open.", lambda: kestrin.has_window("Activity Log"))
            becomes_active("Activity Log")
            self.assertFalse(kestrin.has_window())
            press("ctrl+w")
            wait("The log stays.", lambda: not kestrin.has_window("Activity Log"))
            self.assertIsNone(kestrin.process.poll())

    def closes_for_good(self, kestrin):
        """Whether closing the window ends the program; otherwise the window is shown again."""
        kestrin.close_window()
        try:
            return kestrin.process.wait(0.5) == 0
        except subprocess.TimeoutExpired:
            kestrin.show_again()
            return False

    def open_with_tray(self, *options):
        kestrin = self.start(*options)
        tray = self.tray()
        kestrin.show_again()
        return kestrin, tray

    def test_closing_asks_once(self):
        for options in ([], ["--background"]):
            self.remember()
            kestrin, tray = self.open_with_tray(*options)
            # No answer leaves it as it is.
            kestrin.close_and_answer("Escape")
            self.assertFalse(tray.menu()["Keep Protecting When Closed"][1])
            kestrin.show_again()
            kestrin.close_and_answer("Return")
            wait("The menu does not tell.", lambda t=tray: t.menu()["Keep Protecting When Closed"][1])
            kestrin.show_again()
            kestrin.close_window()
            tray.choose("Open Kestrin")
            kestrin.wait_for_window()
            self.assertFalse(kestrin.has_window("Keep protecting"))
            tray.choose("Keep Protecting When Closed")
            wait("The menu does not change it.", lambda t=tray: not t.menu()["Keep Protecting When Closed"][1])
            kestrin.close_window()
            self.assertEqual(kestrin.process.wait(LIMIT), 0)
            tray.end()

    def test_quitting_is_remembered_and_asks_nothing(self):
        log = tempfile.TemporaryFile()
        screen = subprocess.Popen(["xev", "-root", "-event", "substructure"], stdout=log)
        self.addCleanup(screen.wait)
        self.addCleanup(screen.terminate)

        def come():
            return os.pread(log.fileno(), 1 << 20, 0).count(b"MapNotify")

        windows = 0
        for end, questions in ((lambda kestrin: press("ctrl+q"), 0),
                               (lambda kestrin: kestrin.close_and_answer("Tab", "Return"), 1),
                               (Kestrin.close_window, 0)):
            kestrin, tray = self.open_with_tray()
            windows += 1
            wait("The window is not told of.", lambda expected=windows: come() == expected)
            end(kestrin)
            self.assertEqual(kestrin.process.wait(LIMIT), 0)
            windows += questions
            self.assertEqual(come(), windows)
            tray.end()
        self.assertEqual(self.notices.shown, [])

    def test_without_a_tray_the_end_is_told_once(self):
        # One of them takes back what was said by a program that has gone.
        for server, stays in (("Plasma", 0), ("gnome-shell", 3)):
            self.remember()
            self.notices.server = (server, "43.9")
            before = len(self.notices.shown)
            for _ in range(2):
                kestrin = self.start()
                kestrin.wait_for_window()
                kestrin.close_window()
                closed = time.monotonic()
                self.assertEqual(kestrin.process.wait(LIMIT), 0)
                told, stays_now = self.notices.shown[before:], time.monotonic() - closed
                self.assertEqual([notice[3] for notice in told], ["Protection ends with Kestrin's window."])
                self.assertGreaterEqual(stays_now, stays)
                stays = 0

    @staticmethod
    def ask_to_quit(name, window_class):
        app = InstalledApp(name, window_class)
        wait(f"{name} is not asked to quit.", lambda: "asked 1" in app.lines())
        app.end()

    def test_quit_requests_are_told_once(self):
        kestrin = self.start("--background")
        kestrinctl("enforce", "on")
        opens = ["default", "Open Kestrin"]
        # Some desktops do not let a click open a window.
        for number, (app, window_class, server, version, actions) in enumerate([
                ("Zoom", "Zoom", "Plasma", "5.27.5", opens),
                ("Microsoft Teams", "teams", "gnome-shell", "43.9", []),
                ("Otter AI", "otter", "gnome-shell", "48.7", opens)]):
            self.notices.server = (server, version)
            for _ in range(2):
                self.ask_to_quit(app, window_class)
            notice = wait("There is no notice.", lambda n=number: self.notices.shown[n:])[0]
            self.assertEqual((notice[0], notice[3], notice[5], notice[6]["transient"]),
                             ("Kestrin", f"Asked {app} to quit.", actions, True))
        wait("The notice opens nothing.", lambda: self.notices.click(3) or kestrin.has_window())
        # Whoever looks at the window needs no notice.
        becomes_active("Kestrin")
        self.ask_to_quit("FaceTime", "facetime")
        self.assertEqual(len(self.notices.shown), 3)

    def start_media_server(self):
        """A server of sound with a microphone, in a folder of its own."""
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        before = os.environ["XDG_RUNTIME_DIR"]
        self.addCleanup(lambda: os.environ.update(XDG_RUNTIME_DIR=before))
        os.environ["XDG_RUNTIME_DIR"] = folder.name
        for program in ("pipewire", "wireplumber"):
            self.run_beside(program)
            wait("PipeWire does not listen.", pathlib.Path(folder.name, "pipewire-0").exists)
        output("pw-cli", "create-node", "adapter", "{ factory.name=support.null-audio-sink object.linger=true "
               "node.name=test-mic media.class=Audio/Source/Virtual audio.position=[FL FR] }")

    def run_beside(self, *command):
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def test_an_unknown_recorder_is_named_and_kept_closed(self):
        self.start_media_server()
        kestrinctl("enforce", "on")
        kestrin = self.start("--background")
        tray = self.tray()
        recorder = InstalledApp("Re_corder & co", "recorder", "pw-cat")
        self.addCleanup(recorder.end)
        quiet = tray.icon("IconPixmap")
        record = ("pw-record", "--target", "test-mic", os.devnull)
        recording = self.run_beside(*record)
        notice = wait("There is no notice.", lambda: self.notices.shown)[0]
        self.assertEqual((notice[3], notice[5][2:], notice[6]["transient"]),
                         ("Re_corder & co started using the microphone.", ["accept", "Protect this app…"], False))
        wait("The icon does not tell.", lambda: tray.says("\nRe_corder & co: microphone"))
        self.assertNotEqual(tray.icon("IconPixmap"), quiet)
        self.assertIn("Recorder & co: microphone", tray.menu())
        wait("The notice opens nothing.", lambda: self.notices.click(1, "Protect this app…") or kestrin.has_window())
        wait("The dialog adds nothing.", lambda: press("Return") or "Re_corder & co" in kestrinctl("catalog"))
        # Not before it is started once more.
        self.assertNotIn("asked 1", recorder.lines())
        recorder.end()
        self.ask_to_quit("Re_corder & co", "recorder")
        kestrinctl("live", "off")
        self.addCleanup(kestrinctl, "live", "on")
        wait("The icon tells on.", lambda: not tray.says("microphone"))
        wait("The menu does not follow.", lambda: not tray.menu()["Watch Microphone, Camera and Screen"][1])
        kestrin.end()
        # There is nothing to choose about one that is known, in a program that has not told of it lately.
        kestrinctl("enforce", "off")
        kestrinctl("live", "on")
        self.addCleanup(InstalledApp("Re_corder & co", "recorder", "pw-cat").end)
        self.start("--background")
        wait("The icon does not tell again.", lambda: tray.says("microphone"))
        recording.kill()
        wait("The icon tells on.", lambda: not tray.says("microphone"))
        before = len(self.notices.shown)
        self.run_beside(*record)
        notice = wait("There is no second notice.", lambda: self.notices.shown[before:])[0]
        self.assertEqual((notice[3], notice[5]),
                         ("Re_corder & co started using the microphone.", ["default", "Open Kestrin"]))


if __name__ == "__main__":
    threading.Thread(target=GLib.MainLoop().run, daemon=True).start()
    unittest.main(verbosity=2, warnings="ignore")
