"""The window as a person meets it: the real program on a virtual desktop, found by what a screen reader says
and driven by a screen reader's actions, by mouse and by keyboard.

Runs in tools/with-desktop; KESTRIN, KESTRINCTL and KESTRIN_SAMPLE_APP in the environment are the programs.
"""

import collections
import ctypes
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
from gi.repository import Atspi, Gio, GLib  # noqa: E402

LIMIT = 15  # seconds for what has to happen; a loaded machine may take its time

DEFINITIONS = [
    "Zoom", "FaceTime", "Microsoft Teams", "QuickTime Player", "Voice Memos", "Photo Booth", "Google Chrome",
    "Safari", "Wispr Flow", "Rewind", "MacWhisper", "Otter AI",
]

# The sections, the heading of their page, and its controls in reading order.
Page = collections.namedtuple("Page", "section heading controls")
PAGES = [
    Page("Home", "You are protected", ["Privacy Mode", "Run Mac Check", "Manage devices"]),
    Page("Devices", "Devices", ["Open Install & Connect", "Review Access"]),
    Page("Apps", "Apps", ["Run Live Check", *("Protect " + name for name in DEFINITIONS), "Apply Recommended",
                          "Run Preview"]),
    Page("Schedule", "Schedule", ["Sleep Mode", "Away Mode", "Focus Mode", "Travel Mode", "Manual Mode"]),
    Page("Activity", "Activity", []),
    Page("Access", "Access", ["Selected Mac apps, 12 apps", "Schedules, 3 enabled",
                              "Activity log, Saved locally", "Privacy guide, View", "Help, Contact",
                              "iPhone connection, Use mobile app", "Keep selected apps closed"]),
    Page("Install & Connect", "Install & Connect", ["Run Mac Check", "Copy Diagnostics"]),
]

CONTROLS = {"push button", "check box", "list item"}


class Spoken:
    """What a screen reader knows of one item, read anew each time it is asked for."""

    def __init__(self, accessible):
        self.accessible = accessible
        self.role = accessible.get_role_name()
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

    def is_cut(self, window):
        left, top, width, height = self.box
        window_left, window_top, window_width, window_height = window.box
        return (left < window_left or left + width > window_left + window_width
                or top < window_top or top + height > window_top + window_height)

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


def wait(sentence, fact, limit=LIMIT):
    """Until the fact is there; returns it."""
    deadline = time.monotonic() + limit
    while True:
        try:
            found = fact()
        except GLib.Error:  # what was asked has just gone
            found = None
        if found:
            return found
        if time.monotonic() > deadline:
            raise AssertionError(sentence() if callable(sentence) else sentence)
        time.sleep(0.02)


def output(*command):
    """Of a command that ends well."""
    answer = subprocess.run([*map(str, command)], check=True, capture_output=True, text=True, timeout=LIMIT)
    return answer.stdout


def xdotool(*arguments):
    return output("xdotool", *arguments)


def press(*keys):
    xdotool("key", *keys)


class Screen:
    """Reads colours of windows."""

    def __init__(self):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.x11.XGetImage.restype = ctypes.c_void_p
        self.x11.XGetPixel.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(None))

    def colour(self, window, x, y):
        every_plane, z_pixmap = ctypes.c_ulong(-1), 2
        drawable = ctypes.c_ulong(window)
        image = ctypes.c_void_p(self.x11.XGetImage(self.display, drawable, x, y, 1, 1, every_plane, z_pixmap))
        pixel = self.x11.XGetPixel(image, 0, 0)
        self.x11.XDestroyImage(image)
        return pixel >> 16 & 0xff, pixel >> 8 & 0xff, pixel & 0xff


class SampleApp:
    """An application with one window, known to Kestrin by its desktop entry."""

    def __init__(self, name, window_class):
        entry = pathlib.Path(os.environ["KESTRIN_DESKTOP_SHARE"], "applications", f"{window_class}.desktop")
        entry.write_text(f"[Desktop Entry]\nType=Application\nExec=sample-app\nName={name}\n"
                         f"StartupWMClass={window_class}\n")
        self.said = tempfile.TemporaryFile("w+")
        self.process = subprocess.Popen([os.environ["KESTRIN_SAMPLE_APP"], "--title", name, "--class",
                                         f"{window_class}/{window_class}"], stdout=self.said)
        self.name = name
        wait(f"The window of {name} does not open.", lambda: "mapped 1" in self.lines())

    def lines(self):
        return os.pread(self.said.fileno(), 4096, 0).decode().splitlines()

    def end(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.said.close()


class Kestrin:
    """The running program."""

    def __init__(self, *arguments):
        self.errors = tempfile.TemporaryFile("w+")
        self.process = subprocess.Popen([os.environ["KESTRIN"], *arguments], stderr=self.errors)
        self.application = wait("Kestrin does not appear on the accessibility bus.", self._find)
        self.frame = self.one("frame", "Kestrin")
        wait("The window does not become active.", lambda: "active" in self.frame.states)
        self.window = int(xdotool("search", "--onlyvisible", "--pid", self.process.pid).split()[0])

    def _find(self):
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(i)
            if child and child.get_process_id() == self.process.pid:
                return child
        return None

    def end(self):
        if self.process.poll() is None:
            self.process.terminate()
        self.process.wait()
        self.errors.close()

    def complaints(self):
        return os.pread(self.errors.fileno(), 65536, 0).decode()

    def everything(self):
        return list(walk(self.application))

    def phrases(self):
        return [item.name for item in self.everything()]

    def _all_it_says(self, missing):
        return lambda: f"There is no {missing}. There are: {self.everything()}"

    def one(self, role, name, limit=LIMIT):
        """The item with that role and name, as soon as there is one."""
        def found():
            return next((item for item in self.everything() if (item.role, item.name) == (role, name)), None)
        return wait(self._all_it_says(f"{role} \"{name}\""), found, limit)

    def says(self, phrase):
        wait(self._all_it_says(f"\"{phrase}\""), lambda: phrase in self.phrases())

    def says_ending_with(self, ending):
        wait(self._all_it_says(f"\"...{ending}\""),
             lambda: any(phrase.endswith(ending) for phrase in self.phrases()))

    def show(self, section, heading=None):
        self.one("list item", section).act("Press")
        self.one("heading", heading or section)

    def is_on(self, name):
        return "checked" in self.one("check box", name).states

    def becomes(self, name, on, limit=LIMIT):
        box = self.one("check box", name)
        wait(f"\"{name}\" does not become {'on' if on else 'off'}.", lambda: ("checked" in box.states) == on,
             limit)

    def flip(self, name):
        box = self.one("check box", name)
        on = "checked" in box.states
        box.act("Toggle")
        self.becomes(name, not on)

    def click(self, role, name):
        x, y, width, height = self.one(role, name).box
        xdotool("mousemove", x + width // 2, y + height // 2, "click", 1)

    def focused(self):
        """Where the keyboard is."""
        return next((item for item in self.controls().values() if "focused" in item.states), None)

    def controls(self):
        return {item.name: item for item in self.everything() if item.role in CONTROLS}

    def focus_is(self, name, controls=None):
        control = (controls or self.controls())[name]
        wait(lambda: f"The keyboard is not at \"{name}\" but at {self.focused()}.",
             lambda: "focused" in control.states)

    def selected(self):
        return [item.name for item in self.everything() if "selected" in item.states]

    def size(self):
        """Of the window's content."""
        geometry = xdotool("getwindowgeometry", "--shell", self.window)
        values = dict(line.split("=") for line in geometry.splitlines())
        return int(values["WIDTH"]), int(values["HEIGHT"])


class WindowTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # So that it is noon, when Sleep and Focus rest and Away is active.
        hours = 12 - time.gmtime().tm_hour
        os.environ["TZ"] = f"<noon>{-hours:+d}"
        os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        os.environ["QT_QPA_PLATFORM"] = "xcb"
        os.makedirs(os.path.join(os.environ["KESTRIN_DESKTOP_SHARE"], "applications"), exist_ok=True)
        cls.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        # The virtual desktop starts no services by itself.
        cls.launcher = subprocess.Popen(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"],
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait("The accessibility bus does not start.", lambda: cls.bus.call_sync(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None, 0, -1, None))
        Atspi.init()
        Atspi.set_timeout(5000, 15000)
        Atspi.get_desktop(0).set_cache_mask(Atspi.Cache.NONE)

    @classmethod
    def tearDownClass(cls):
        cls.launcher.terminate()
        cls.launcher.wait()

    def setUp(self):
        home = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, home)
        self.support = home / "share" / "Kestrin"
        os.environ["XDG_DATA_HOME"] = str(home / "share")
        os.environ["XDG_CONFIG_HOME"] = str(home / "config")

    def launch(self, *arguments):
        kestrin = Kestrin(*arguments)
        self.addCleanup(kestrin.end)
        self.addCleanup(lambda: self.assertEqual(kestrin.complaints(), ""))
        return kestrin

    def open_app(self, name, window_class):
        app = SampleApp(name, window_class)
        self.addCleanup(app.end)
        return app

    def kestrinctl(self, *arguments):
        output(os.environ["KESTRINCTL"], *arguments)

    def settings(self):
        return json.loads((self.support / "privacy-mode-settings.json").read_text())

    def messages(self):
        """Of the activity log, newest first."""
        return [event["message"] for event in json.loads((self.support / "activity-log.json").read_text())]

    def closes(self, app):
        wait(f"{app.name} does not close.", lambda: app.process.poll() is not None)
        self.assertIn("asked 1", app.lines())

    def quits(self, kestrin):
        press("ctrl+q")
        self.assertEqual(kestrin.process.wait(LIMIT), 0)

    @staticmethod
    def enabled_schedules(kestrin):
        page = next(page for page in PAGES if page.section == "Schedule")
        return [name for name in page.controls if kestrin.is_on(name)]

    def test_first_launch(self):
        kestrin = self.launch()
        kestrin.one("heading", "You are protected")
        self.assertEqual(kestrin.selected(), ["Home"])
        self.assertTrue(kestrin.is_on("Privacy Mode"))
        kestrin.says("Mac engine, Preview")
        kestrin.says("MacBook Pro, On, Selected protected apps are monitored in preview mode")
        self.assertEqual(kestrin.size(), (1180, 760))
        self.assertEqual(xdotool("getwindowname", kestrin.window).strip(), "Kestrin")
        self.assertTrue(self.settings()["isEnabled"])
        self.assertEqual(len(self.settings()["protectedDefinitionIDs"]), len(DEFINITIONS))
        for file in self.support.iterdir():
            self.assertEqual(file.stat().st_mode & 0o777, 0o600, file)
        kestrin.show("Apps")
        for name in DEFINITIONS:
            self.assertTrue(kestrin.is_on("Protect " + name))
        kestrin.show("Schedule")
        self.assertEqual(self.enabled_schedules(kestrin), ["Sleep Mode", "Away Mode", "Manual Mode"])

    def test_everything_is_said(self):
        self.open_app("Zoom", "zoom")
        kestrin = self.launch()
        for page in PAGES:
            kestrin.show(page.section, page.heading)
            items = [item for item in kestrin.everything() if item.role != "application"]
            for item in items:
                with self.subTest(page=page.section, item=item):
                    self.assertTrue(item.name)
                    if item.role in CONTROLS:
                        self.assertIn("Press", item.actions)
                        self.assertLessEqual({"focusable", "enabled"}, item.states)
                    else:
                        # Nothing to do there. That texts can take the keyboard, Qt says of every one.
                        self.assertLessEqual(set(item.actions), {"SetFocus"} if item.role == "label" else set())
                    if item.role == "check box":
                        self.assertIn("Toggle", item.actions)
            self.assertEqual([item.name for item in items if item.role == "list item"],
                             [other.section for other in PAGES])
            self.assertEqual(kestrin.selected(), [page.section])
            self.assertEqual([item.name for item in items if item.role in {"push button", "check box"}],
                             page.controls)
            # The sections are named by the list, the window by its frame; the rest are phrases.
            self.assertLessEqual({item.role for item in items},
                                 CONTROLS | {"frame", "image", "list", "heading", "label"})
        kestrin.show("Apps")
        for phrase in ("Running apps, 2", "Protected app matches, 1", "Actions previewed, 1",
                       "Zoom, Video call / Microphone / Camera, Keep closed"):
            kestrin.says(phrase)

    def test_keyboard(self):
        kestrin = self.launch()
        press("Tab")
        kestrin.focus_is("Home")
        for number, page in enumerate(PAGES, 1):
            press(f"ctrl+{number}")
            kestrin.one("heading", page.heading)
            controls = kestrin.controls()
            kestrin.focus_is(page.section, controls)
            for name in [*page.controls, page.section]:
                press("Tab")
                kestrin.focus_is(name, controls)
                self.assertFalse(controls[name].is_cut(kestrin.frame), f"{name} is out of sight")
        press("shift+Tab")
        kestrin.focus_is("Copy Diagnostics")
        press("Return")
        kestrin.one("push button", "Diagnostics Copied")
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
        self.quits(kestrin)

    def test_privacy_mode(self):
        self.kestrinctl("schedule", "disable", "sleep", "away")
        self.kestrinctl("on")
        kestrin = self.launch()
        kestrin.click("check box", "Privacy Mode")
        kestrin.one("heading", "Protection is off")
        kestrin.says("MacBook Pro, Off, Privacy Mode paused on this Mac")
        self.assertFalse(self.settings()["isEnabled"])
        kestrin.click("push button", "Turn on Privacy Mode")
        kestrin.becomes("Privacy Mode", True)
        self.assertTrue(self.settings()["isEnabled"])
        self.assertEqual(self.messages()[:2],
                         ["Privacy Mode is on for this Mac.", "Privacy Mode is off for this Mac."])
        # Another process.
        self.kestrinctl("off")
        kestrin.becomes("Privacy Mode", False, limit=1)
        kestrin.show("Activity")

        def switches():
            return sum(name.endswith("Privacy Mode is on for this Mac.") for name in kestrin.phrases())
        before = switches()
        self.kestrinctl("on")
        wait("The activity of another process is not seen.", lambda: switches() == before + 1, limit=1)
        # A check moves on to what it found.
        kestrin.show("Home", "You are protected")
        kestrin.one("push button", "Run Mac Check").act("Press")
        kestrin.one("heading", "Live Mac Check")
        self.assertEqual(kestrin.selected(), ["Apps"])

    def test_protection(self):
        zoom, otter = self.open_app("Zoom", "zoom"), self.open_app("Otter AI", "otter")
        editor = self.open_app("Text Editor", "editor")
        kestrin = self.launch()
        kestrin.show("Apps")
        kestrin.says("Protected app matches, 2")
        kestrin.flip("Protect Zoom")
        kestrin.says("Protected app matches, 1")
        kestrin.says("11 selected")
        self.assertNotIn("zoom", self.settings()["protectedDefinitionIDs"])
        kestrin.click("check box", "Protect Zoom")
        kestrin.says("Protected app matches, 2")
        kestrin.flip("Protect Otter AI")
        kestrin.says("Protected app matches, 1")

        kestrin.show("Access")
        self.assertIsNone(zoom.process.poll())
        kestrin.flip("Keep selected apps closed")
        self.closes(zoom)
        kestrin.says("Mac app actions, Enforcing")

        kestrin.show("Activity")
        again = self.open_app("Zoom", "zoom")
        self.closes(again)
        kestrin.says_ending_with(", Zoom, Zoom relaunched while Privacy Mode is on.")
        kestrin.says_ending_with(", Zoom, Asked Zoom to quit.")
        for app in (otter, editor):
            self.assertIsNone(app.process.poll())
            self.assertEqual(app.lines(), ["mapped 1"])
        activity = [name for name in kestrin.phrases() if "Zoom" in name]
        xdotool("windowfocus", "--sync", kestrin.window)
        self.quits(kestrin)

        kestrin = self.launch()
        self.assertEqual(kestrin.selected(), ["Home"])
        kestrin.says("Mac engine, Enforcing")
        kestrin.show("Activity")
        self.assertEqual([name for name in kestrin.phrases() if "Zoom" in name], activity)
        kestrin.show("Access")
        self.assertTrue(kestrin.is_on("Keep selected apps closed"))
        kestrin.says("Selected Mac apps, 11 apps")
        kestrin.show("Apps")
        self.assertTrue(kestrin.is_on("Protect Zoom"))
        self.assertFalse(kestrin.is_on("Protect Otter AI"))
        self.assertIsNone(otter.process.poll())

    def test_schedule(self):
        self.kestrinctl("schedule", "disable", "sleep", "away")
        self.kestrinctl("off")
        kestrin = self.launch()
        self.assertFalse(kestrin.is_on("Privacy Mode"))
        kestrin.show("Schedule")
        kestrin.says("1 enabled")
        kestrin.flip("Away Mode")
        kestrin.says("2 enabled")
        self.assertEqual(self.messages()[:3], ["Privacy Mode is on for this Mac.",
                                               "Schedule turned Privacy Mode on.", "Away Mode enabled."])
        kestrin.show("Home", "You are protected")
        # Only Sleep is left, which rests at noon.
        kestrin.show("Schedule")
        kestrin.flip("Sleep Mode")
        kestrin.click("check box", "Away Mode")
        kestrin.says("2 enabled")
        kestrin.show("Home", "Protection is off")
        self.quits(kestrin)
        kestrin = self.launch()
        kestrin.show("Schedule")
        self.assertEqual(self.enabled_schedules(kestrin), ["Sleep Mode", "Manual Mode"])

    def test_diagnostics(self):
        self.open_app("Zoom", "zoom")
        self.open_app("Text Editor", "editor")
        kestrin = self.launch()
        kestrin.show("Install & Connect")
        kestrin.one("push button", "Run Mac Check").act("Press")
        kestrin.says("Running apps scanned, 3")  # Kestrin's own window is one
        kestrin.one("push button", "Copy Diagnostics").act("Press")
        kestrin.one("push button", "Diagnostics Copied")
        self.assertEqual(output("xclip", "-selection", "clipboard", "-o"),
                         "Kestrin Mac diagnostics\n"
                         "Relaunch monitor: Preview\n"
                         "Mac app actions: Preview\n"
                         "Selected protected apps: 12\n"
                         "Running apps scanned: 3\n"
                         "Protected app matches: 1")

    def test_appearance(self):
        screen = Screen()
        light, dark = (244, 246, 250), (11, 15, 23)

        def looks(kestrin, colour):
            def seen():
                return screen.colour(kestrin.window, 225, 12)  # the page, where nothing else is
            wait(lambda: f"The page is {seen()}, not {colour}.", lambda: seen() == colour)

        kestrin = self.launch()
        looks(kestrin, light)
        self.desktop_prefers(1)
        looks(kestrin, dark)
        self.desktop_prefers(2)
        looks(kestrin, light)
        self.quits(kestrin)
        kestrin = self.launch("--appearance", "dark")
        self.desktop_prefers(2)
        looks(kestrin, dark)

    def desktop_prefers(self, scheme):
        """What the settings portal says to everybody."""
        value = GLib.Variant("u", scheme)
        change = GLib.Variant("(ssv)", ("org.freedesktop.appearance", "color-scheme", value))
        self.bus.emit_signal(None, "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings",
                             "SettingChanged", change)
        self.bus.flush_sync(None)

    def test_minimum_size(self):
        kestrin = self.launch()
        output("wmctrl", "-i", "-r", hex(kestrin.window), "-e", "0,20,20,500,400")
        wait(lambda: f"The window is {kestrin.size()}.", lambda: kestrin.size() == (1040, 680))
        for page in PAGES:
            kestrin.show(page.section, page.heading)
            left, _, width, _ = kestrin.frame.box
            for item in kestrin.everything()[2:]:
                item_left, _, item_width, _ = item.box
                self.assertTrue(left <= item_left and item_left + item_width <= left + width,
                                f"{item} is cut on {page.section}")


if __name__ == "__main__":
    # The bindings deprecate what they have no other way for: the name of an action.
    unittest.main(verbosity=2, warnings="ignore")
