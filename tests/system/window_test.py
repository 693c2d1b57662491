"""The window as a person meets it: the real program on a virtual desktop, found by what a screen reader says
and driven by a screen reader's actions, by mouse and by keyboard.

Runs in tools/with-desktop; KESTRIN, KESTRINCTL and KESTRIN_SAMPLE_APP in the environment are the programs.
"""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import time
import unittest

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio  # noqa: E402

from programs import LIMIT, SampleApp, kestrinctl, output, wait  # noqa: E402

DEFINITIONS = [
    "Zoom", "FaceTime", "Microsoft Teams", "QuickTime Player", "Voice Memos", "Photo Booth", "Google Chrome",
    "Safari", "Wispr Flow", "Rewind", "MacWhisper", "Otter AI",
]

# Of each page the section, the heading and the controls in reading order.
PAGES = [
    ("Home", "You are protected", ["Privacy Mode", "Run Mac Check", "Manage devices"]),
    ("Devices", "Devices", ["Open Install & Connect", "Review Access"]),
    ("Apps", "Apps", ["Run Live Check", *("Protect " + name for name in DEFINITIONS), "Apply Recommended",
                      "Run Preview", "Add an App…"]),
    ("Schedule", "Schedule", ["Sleep Mode", "Away Mode", "Focus Mode", "Travel Mode", "Manual Mode"]),
    ("Activity", "Activity", ["Show the whole log"]),
    ("Access", "Access", ["Selected Mac apps, 12 apps", "Schedules, 3 enabled", "Activity log, Saved locally",
                          "Privacy guide, View", "Help, Contact", "iPhone connection, Use mobile app",
                          "Keep selected apps closed"]),
    ("Install & Connect", "Install & Connect", ["Run Mac Check", "Copy Diagnostics"]),
]

CONTROLS = {"push button", "check box", "radio button", "list item"}


class Spoken:
    """What a screen reader knows of one item, read anew each time it is asked for."""

    def __init__(self, accessible):
        self.accessible = accessible
        role = accessible.get_role_name()
        self.role = {"button": "push button"}.get(role, role)  # its name in newer versions
        self.name = accessible.get_name()

    def __repr__(self):
        return f"{self.role} \"{self.name}\""

    @property
    def states(self):
        return {state.value_nick for state in self.accessible.get_state_set().get_states()}

    @property
    def actions(self):
        count = self.accessible.get_n_actions() if "Action" in self.accessible.get_interfaces() else 0
        return [Atspi.Action.get_action_name(self.accessible, i) for i in range(count)]

    @property
    def box(self):
        extents = self.accessible.get_extents(Atspi.CoordType.SCREEN)
        return extents.x, extents.y, extents.width, extents.height

    def is_inside(self, window):
        (x, y, width, height), (left, top, wide, high) = self.box, window.box
        return left <= x <= left + wide - width and top <= y <= top + high - height

    def act(self, action):
        Atspi.Action.do_action(self.accessible, self.actions.index(action))


def walk(accessible):
    """What is there to be heard of it, in the order of reading."""
    item = Spoken(accessible)
    # Qt calls invisible what is hidden, and also what is scrolled out of the window; only the former is nowhere.
    if "visible" not in item.states and item.box == (0, 0, 0, 0):
        return
    yield item
    for i in range(accessible.get_child_count()):
        child = accessible.get_child_at_index(i)
        if child:
            yield from walk(child)


def press(*keys):
    output("xdotool", "key", *keys)


def move_to(hour):
    """Lets it be this hour where the programs run that are started from now on."""
    os.environ["TZ"] = f"<there>{(time.gmtime().tm_hour - hour + 12) % 24 - 12:+d}"


def active_window():
    return output("xdotool", "getactivewindow", "getwindowname")


def becomes_active(title):
    wait(f"{title} is not active.", lambda: active_window().startswith(title))


class InstalledApp(SampleApp):
    """An application with one window, known to Kestrin by its desktop entry, which may name another program too."""

    def __init__(self, name, window_class, program="sample-app"):
        entry = pathlib.Path(os.environ["KESTRIN_DESKTOP_SHARE"], "applications", f"{window_class}.desktop")
        entry.write_text(f"[Desktop Entry]\nType=Application\nExec={program}\nName={name}\n"
                         f"StartupWMClass={window_class}\n")
        super().__init__("--title", name, "--class", f"{window_class}/{window_class}")
        self.name = name


class Program:
    """Which runs, and nobody else does."""

    def __init__(self, *options):
        self.errors = tempfile.TemporaryFile()
        self.process = subprocess.Popen([os.environ["KESTRIN"], *options], stderr=self.errors)
        lock = pathlib.Path(os.environ["XDG_DATA_HOME"], "Kestrin", "monitor.lock")
        wait("Kestrin does not start.", lambda: lock.exists() and str(self.process.pid) in lock.read_text())

    def complaints(self):
        lines = os.pread(self.errors.fileno(), 65536, 0).decode().splitlines()
        # Newer screen readers ask what Qt has no answer for, and it is Qt that says so.
        return "\n".join(line for line in lines if "AtSpiAdaptor::applicationInterface does not implement" not in line)

    def end(self):
        self.process.terminate()
        self.process.wait()


class Kestrin(Program):
    """And its window is read and driven."""

    def __init__(self, *options):
        super().__init__(*options)
        if "--background" in options:
            # A second start brings the window.
            output(os.environ["KESTRIN"])
        self.application = wait("Kestrin does not appear on the accessibility bus.", self._find)
        self.frame = self.one("frame", "Kestrin")
        wait("The window does not become active.", lambda: "active" in self.frame.states)

    def _find(self):
        desktop = Atspi.get_desktop(0)
        children = (desktop.get_child_at_index(i) for i in range(desktop.get_child_count()))
        return next((child for child in children if child and child.get_process_id() == self.process.pid), None)

    def everything(self):
        return list(walk(self.application))

    def find(self, wanted, matches):
        """The first item that matches, as soon as there is one."""
        return wait(lambda: f"There is no {wanted}. There are: {self.everything()}",
                    lambda: next(filter(matches, self.everything()), None))

    def one(self, role, name):
        return self.find(f"{role} \"{name}\"", lambda item: (item.role, item.name) == (role, name))

    def says(self, phrase):
        """Whole, or after the time of day."""
        self.find(f"\"{phrase}\"", lambda item: item.name == phrase or item.name.endswith(" " + phrase))

    def begins(self, words):
        self.find(f"\"{words}…\"", lambda item: item.name.startswith(words))

    def show(self, section, heading=None):
        self.one("list item", section).act("Press")
        self.one("heading", heading or section)

    def is_on(self, name):
        return "checked" in self.one("check box", name).states

    def becomes(self, name, on):
        wait(f"\"{name}\" does not become {'on' if on else 'off'}.", lambda: self.is_on(name) == on)

    def toggle(self, name):
        self.one("check box", name).act("Toggle")

    def click(self, role, name):
        x, y, width, height = self.one(role, name).box
        output("xdotool", "mousemove", x + width // 2, y + height // 2, "click", 1)

    def controls(self):
        return {item.name: item for item in self.everything() if item.role in CONTROLS}

    def focus_is(self, name, controls=None):
        control = (controls or self.controls())[name]
        wait(f"The keyboard is not at \"{name}\".", lambda: "focused" in control.states)


class WindowTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # When Sleep and Focus rest and Away is active.
        move_to(12)
        os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        os.environ["QT_QPA_PLATFORM"] = "xcb"
        os.makedirs(os.path.join(os.environ["KESTRIN_DESKTOP_SHARE"], "applications"), exist_ok=True)
        # The virtual desktop starts no services by itself.
        launcher = subprocess.Popen(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"],
                                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        cls.addClassCleanup(launcher.wait)
        cls.addClassCleanup(launcher.terminate)
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        wait("The accessibility bus does not start.", lambda: bus.call_sync(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None, 0, -1, None))
        Atspi.init()
        Atspi.set_timeout(5000, 15000)
        Atspi.get_desktop(0).set_cache_mask(Atspi.Cache.NONE)

    def setUp(self):
        home = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, home)
        os.environ["XDG_DATA_HOME"] = str(home / "share")
        os.environ["XDG_CONFIG_HOME"] = str(home / "config")
        os.environ["XDG_CACHE_HOME"] = str(home / "cache")
        # Nobody's first start, unless a test forgets it.
        kestrinctl("on")
        # Qt would keep there what is not compiled into the program, and look at it again after an upgrade.
        compiled = home / "cache" / "Kestrin" / "qmlcache"
        self.addCleanup(lambda: self.assertFalse(compiled.exists(), "Views are not compiled in."))

    def launch(self, *options):
        kestrin = Kestrin(*options)
        self.addCleanup(kestrin.end)
        self.addCleanup(lambda: self.assertEqual(kestrin.complaints(), ""))
        return kestrin

    def open_app(self, name, window_class):
        app = InstalledApp(name, window_class)
        self.addCleanup(app.end)
        return app

    def closes(self, app):
        wait(f"{app.name} does not close.", lambda: app.process.poll() is not None)
        self.assertIn("asked 1", app.lines())

    def test_everything_is_said(self):
        self.open_app("Zoom", "zoom")
        kestrin = self.launch()
        self.assertEqual(kestrin.frame.box[2:], (1180, 760))
        on = []
        for section, heading, controls in PAGES:
            kestrin.show(section, heading)
            items = [item for item in kestrin.everything() if item.role != "application"]
            for item in items:
                with self.subTest(page=section, item=item):
                    self.assertTrue(item.name)
                    if item.role in CONTROLS:
                        self.assertIn("Toggle" if item.role == "check box" else "Press", item.actions)
                        self.assertLessEqual({"focusable", "enabled"}, item.states)
                    else:
                        # Nothing to do there. That texts can take the keyboard, Qt says of every one.
                        self.assertLessEqual(set(item.actions), {"SetFocus"} if item.role == "label" else set())
                    if item.role not in {"frame", "list"}:
                        # What it is made of is not said a second time.
                        self.assertEqual(item.accessible.get_child_count(), 0)
            self.assertEqual([item.name for item in items if item.role == "list item"],
                             [section for section, _, _ in PAGES])
            self.assertEqual([item.name for item in items if "selected" in item.states], [section])
            on += [item.name for item in items if "checked" in item.states]
            self.assertEqual([item.name for item in items if item.role in {"push button", "check box"}],
                             controls)
        self.assertEqual(on, ["Privacy Mode", *("Protect " + name for name in DEFINITIONS), "Sleep Mode",
                              "Away Mode", "Manual Mode"])
        kestrin.show("Apps")
        for phrase in ("Running apps, 2", "Protected app matches, 1", "Actions previewed, 1",
                       "Zoom, Video call / Microphone / Camera, Keep closed"):
            kestrin.says(phrase)

    def test_own_app(self):
        app = self.open_app("Own Notes", "org.example.Notes")
        kestrinctl("enforce", "on")
        kestrin = self.launch()
        kestrin.show("Apps")
        kestrin.one("push button", "Add an App…").act("Press")
        wait("The search has not the keyboard.", lambda: "focused" in kestrin.one("text", "Search applications").states)
        output("xdotool", "type", "own n")
        press("Down")
        wait("It is not chosen.", lambda: "selected" in kestrin.one("list item", "Own Notes").states)
        kestrin.toggle("Video call")
        kestrin.click("push button", "Add")
        kestrin.becomes("Protect Own Notes", True)
        self.assertIsNone(app.process.poll())
        kestrin.one("push button", "Apply Now").act("Press")
        self.closes(app)
        # Without a mouse.
        kestrin.one("check box", "Protect Own Notes").act("SetFocus")
        press("Delete")
        kestrin.says("Own Notes was removed.")
        kestrin.one("push button", "Undo").act("Press")
        kestrin.becomes("Protect Own Notes", True)

    def test_keyboard(self):
        kestrin = self.launch()
        # Where there is the least room.
        output("wmctrl", "-F", "-r", "Kestrin", "-e", "0,20,20,500,400")
        wait("The window is not as small as it can be.", lambda: kestrin.frame.box[2:] == (1040, 680))
        press("Tab")
        kestrin.focus_is("Home")
        for number, (section, heading, names) in enumerate(PAGES, 1):
            press(f"ctrl+{number}")
            kestrin.one("heading", heading)
            controls = kestrin.controls()
            kestrin.focus_is(section, controls)
            for name in [*names, section]:
                press("Tab")
                kestrin.focus_is(name, controls)
                self.assertTrue(controls[name].is_inside(kestrin.frame), f"{name} is out of sight")
        press("shift+Tab", "Return")
        kestrin.one("push button", "Diagnostics Copied")
        # The window itself is one.
        self.assertIn("\nRunning apps scanned: 1\n", output("xclip", "-selection", "clipboard", "-o"))
        press("Tab", "Up")
        kestrin.one("heading", "Access")
        kestrin.focus_is("Access")
        press("Down")
        kestrin.one("push button", "Copy Diagnostics")  # what was copied is forgotten
        press("ctrl+1", "Tab")
        kestrin.focus_is("Privacy Mode")
        press("space")
        kestrin.becomes("Privacy Mode", False)
        press("Return")
        kestrin.becomes("Privacy Mode", True)
        press("Tab", "Tab", "Return")
        kestrin.one("heading", "Devices")
        kestrin.focus_is("Devices")
        press("ctrl+q")
        self.assertEqual(kestrin.process.wait(LIMIT), 0)

    def launch_first(self, *options):
        for folder in (os.environ["XDG_DATA_HOME"], os.environ["XDG_CONFIG_HOME"]):
            shutil.rmtree(folder, ignore_errors=True)
        kestrin = self.launch(*options)
        kestrin.one("heading", "What should Kestrin do?")
        kestrin.focus_is("Next")
        return kestrin

    def launch_again(self, kestrin):
        """Which asks nothing any more: the keyboard begins at the sections."""
        kestrin.end()
        kestrin = self.launch()
        press("Tab")
        kestrin.focus_is("Home")
        kestrin.end()

    @staticmethod
    def choices():
        status = json.loads(kestrinctl("status", "--json"))
        return status["enforceActions"], status["enabledModeIDs"], kestrinctl("autostart")

    def test_first_start_chooses(self):
        app = self.open_app("Zoom", "zoom")
        kestrin = self.launch_first()
        for name in ("Preview", "Quit requests", "Skip", "Next", "Preview", "Quit requests"):
            press("Tab")
            kestrin.focus_is(name)
        press("space")
        wait("It is not chosen.", lambda: "checked" in kestrin.one("radio button", "Quit requests").states)
        self.assertIsNone(app.process.poll())
        press("Tab", "Tab", "Return")
        self.closes(app)
        kestrin.one("heading", "When is Privacy Mode on?")
        kestrin.begins("Away Mode keeps Privacy Mode on right now. Later today it goes off at ")
        kestrin.click("check box", "Away Mode")
        kestrin.begins("No schedule is active right now, which keeps Privacy Mode off. Later today it goes on at ")
        kestrin.one("push button", "Next").act("Press")
        kestrin.one("radio button", "At login").act("Toggle")
        wait("It is not chosen.", lambda: "checked" in kestrin.one("radio button", "At login").states)
        kestrin.click("push button", "Done")
        press("Tab")
        kestrin.focus_is("Home")
        self.assertEqual(self.choices(), (True, ["sleep", "manual"], "Kestrin starts at login.\n"))
        self.launch_again(kestrin)

    def test_first_start_changes_only_what_is_chosen(self):
        def goes(kestrin):
            press("Tab")
            kestrin.focus_is("Home")
        for options, leave, afterwards in (
                ([], lambda kestrin: press("Escape"), goes),
                (["--background"], lambda kestrin: kestrin.click("push button", "Skip"), goes),
                ([], lambda kestrin: press("Return", "Return", "Return"), goes),
                ([], lambda kestrin: kestrin.process.kill(), lambda kestrin: kestrin.process.wait())):
            kestrin = self.launch_first(*options)
            leave(kestrin)
            afterwards(kestrin)
            self.assertEqual(self.choices(), (False, ["sleep", "away", "manual"], "Kestrin does not start at login.\n"))
            self.launch_again(kestrin)

    def test_protection(self):
        zoom, otter = self.open_app("Zoom", "zoom"), self.open_app("Otter AI", "otter")
        editor = self.open_app("Text Editor", "editor")
        kestrin = self.launch()
        kestrin.show("Apps")
        kestrin.says("Protected app matches, 2")
        kestrin.click("check box", "Protect Zoom")
        kestrin.says("Protected app matches, 1")
        kestrin.says("11 selected")
        kestrin.one("push button", "Apply Recommended").act("Press")
        kestrin.says("12 Mac protected apps selected")
        kestrin.toggle("Protect Otter AI")
        kestrin.says("Protected app matches, 1")

        kestrin.show("Access")
        self.assertIsNone(zoom.process.poll())
        kestrin.toggle("Keep selected apps closed")
        self.closes(zoom)
        kestrin.says("Mac app actions, Enforcing")

        kestrin.show("Activity")
        self.closes(self.open_app("Zoom", "zoom"))
        kestrin.says("Zoom, Zoom relaunched while Privacy Mode is on.")
        kestrin.says("Zoom, Asked Zoom to quit.")
        for app in (otter, editor):
            self.assertIsNone(app.process.poll())
            self.assertEqual(app.lines(), ["mapped 1"])

    def test_log(self):
        self.open_app("Zoom", "zoom")
        for _ in range(2):
            kestrinctl("check", "--preview")
        kestrin = self.launch()
        press("ctrl+l")
        becomes_active("Activity Log")
        log = kestrin.one("frame", "Activity Log")
        kestrin.focus_is("Search the log", {"Search the log": kestrin.one("text", "Search the log")})
        press("Down")
        row = kestrin.find("line of the log", lambda item: item.role == "list item" and "focused" in item.states)
        self.assertIn("selected", row.states)
        self.assertTrue(row.name.endswith(" quit while Privacy Mode is on."))
        for item in walk(log.accessible):
            with self.subTest(item=item):
                self.assertTrue(item.name)
        # What another process records, while it is read.
        kestrinctl("off")
        kestrin.says("Privacy Mode Off, Privacy Mode is off for this Mac.")
        kestrin.says("MacBook Pro, Off, Privacy Mode paused on this Mac")
        # There is one, which a second wish brings to the front.
        output("wmctrl", "-F", "-a", "Kestrin")
        becomes_active("Kestrin")
        press("ctrl+l")
        becomes_active("Activity Log")
        self.assertEqual([item.name for item in kestrin.everything() if item.role == "frame"],
                         ["Kestrin", "Activity Log"])
        press("ctrl+w")
        wait("The log is not closed.", lambda: "Activity Log" not in output("wmctrl", "-l"))
        # It goes with the window where that ends the program.
        kestrin.show("Activity")
        kestrin.one("push button", "Show the whole log").act("Press")
        becomes_active("Activity Log")
        output("wmctrl", "-F", "-a", "Kestrin")
        becomes_active("Kestrin")
        press("ctrl+w")
        self.assertEqual(kestrin.process.wait(LIMIT), 0)


if __name__ == "__main__":
    # The bindings deprecate what they have no other way for: the name of an action.
    unittest.main(verbosity=2, warnings="ignore")
