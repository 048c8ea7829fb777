"""A private desktop with the server activatable on one site, as tests drive it."""

import json
import os
import re
import subprocess
import time

import dbus
from PIL import Image

TOP = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
BUS_NAME = "net.tarnholm.Kintar3"
ROOT = "/net/tarnholm/Kintar3"
PROPERTIES = "org.freedesktop.DBus.Properties"


def await_true(condition, seconds=30.0, what="the condition"):
    """Waits until `condition` gives something true and returns that; fails loudly."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {seconds} s in vain for {what}")
        time.sleep(0.02)


class Instance:
    """One object of a public class, over the bus."""

    def __init__(self, client, path):
        self.path = str(path)
        self.name = self.path.split("/")[-2]
        self.interface = f"{BUS_NAME}.{self.name}"
        self.proxy = client.bus.get_object(BUS_NAME, self.path, introspect=False)
        self._properties = dbus.Interface(self.proxy, PROPERTIES)

    def set(self, member, value):
        self._properties.Set(self.interface, member, value, signature="ssv")

    def get(self, member):
        return self._properties.Get(self.interface, member)

    def get_all(self):
        return self._properties.GetAll(self.interface)

    def call(self, member, *arguments):
        return self.proxy.get_dbus_method(member, self.interface)(*arguments)


class Client:
    """A connection of its own to the private bus."""

    def __init__(self, address):
        self.bus = dbus.bus.BusConnection(address)
        self._root = None

    @property
    def root(self):
        if self._root is None:
            self._root = self.bus.get_object(BUS_NAME, ROOT, introspect=False)
        return self._root

    def create(self, class_name):
        path = self.root.CreateObject(class_name, dbus_interface=f"{BUS_NAME}.Server")
        return Instance(self, path)

    def release(self, instance):
        self.root.ReleaseObject(
            dbus.ObjectPath(instance.path), dbus_interface=f"{BUS_NAME}.Server"
        )

    def close(self):
        self.bus.close()


class Desktop:
    """What `scripts/with-server` sets up, held until `close`."""

    def __init__(self, site, screen="1280x1024x24", environment=None):
        self.site = str(site)
        surroundings = dict(os.environ, KINTAR3_SCREEN=screen, **(environment or {}))
        self._holder = subprocess.Popen(
            [
                os.path.join(TOP, "scripts", "with-server"),
                self.site,
                "--",
                "sh",
                "-c",
                "env -0; printf 'READY\\0'; exec cat >/dev/null",
            ],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            env=surroundings,
        )
        received = b""
        while not received.endswith(b"READY\0"):
            piece = os.read(self._holder.stdout.fileno(), 65536)
            if not piece:
                raise AssertionError("the private desktop did not come up")
            received += piece
        entries = received.decode("utf-8", "surrogateescape").split("\0")
        self.environment = dict(entry.split("=", 1) for entry in entries if "=" in entry)
        self.address = self.environment["DBUS_SESSION_BUS_ADDRESS"]
        self._clients = []

    def close(self):
        for client in self._clients:
            client.close()
        self._holder.stdin.close()
        self._holder.wait(timeout=60)

    def client(self):
        client = Client(self.address)
        self._clients.append(client)
        return client

    def run(self, *command, check=True, **options):
        """Runs a command on the desktop; its outcome, texts decoded."""
        options.setdefault("timeout", 60)
        return subprocess.run(
            command, env=self.environment, capture_output=True, text=True, check=check, **options
        )

    def start(self, *command, **options):
        return subprocess.Popen(command, env=self.environment, text=True, **options)

    def log(self):
        with open(self.environment["KINTAR3_LOG"], encoding="utf-8", errors="replace") as log:
            return log.read()

    def server_pid(self):
        return int(
            self.client()
            .bus.get_object("org.freedesktop.DBus", "/org/freedesktop/DBus", introspect=False)
            .GetConnectionUnixProcessID(BUS_NAME, dbus_interface="org.freedesktop.DBus")
        )

    def server_runs(self):
        owner = self.client().bus.get_object(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", introspect=False
        )
        return bool(owner.NameHasOwner(BUS_NAME, dbus_interface="org.freedesktop.DBus"))

    def windows(self, title=".*"):
        """The visible windows whose whole title matches, as ids."""
        found = self.run("xdotool", "search", "--onlyvisible", "--name", title, check=False)
        ids = [int(line) for line in found.stdout.split()]
        return [window for window in ids if re.fullmatch(title, self.title(window) or "")]

    def title(self, window):
        return self.run("xdotool", "getwindowname", str(window), check=False).stdout.rstrip("\n")

    def await_window(self, title, seconds=30.0):
        return await_true(lambda: self.windows(title), seconds, f"a window titled {title}")[0]

    def await_no_window(self, title, seconds=30.0):
        await_true(lambda: not self.windows(title), seconds, f"no window titled {title}")

    def geometry(self, window):
        """Left, top, width and height of a window's inside on the screen, in pixels."""
        text = self.run("xwininfo", "-id", str(window)).stdout
        labels = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        return tuple(
            int(re.search(rf"^\s*{label}:\s*(-?\d+)", text, re.MULTILINE).group(1))
            for label in labels
        )

    def focused_window(self):
        found = self.run("xdotool", "getwindowfocus", check=False)
        return int(found.stdout) if found.stdout.strip() else 0

    def click(self, x, y, times=1):
        self.run("xdotool", "mousemove", str(x), str(y))
        self.run("xdotool", "click", "--repeat", str(times), "--delay", "40", "1")

    def type(self, text):
        self.run("xdotool", "type", "--delay", "5", text)

    def picture(self, window="root"):
        """What a window shows now, as an image."""
        path = os.path.join(self.environment["TMPDIR"], "picture.png")
        self.run("import", "-silent", "-window", str(window), path)
        with Image.open(path) as image:
            return image.convert("RGB").copy()


class ForeignWindow:
    """A window of another program, here of the test itself, that can hold the keyboard focus."""

    def __init__(self, desktop, title="Foreign", geometry=(700, 500, 300, 200)):
        from Xlib import X, display

        self._display = display.Display(desktop.environment["DISPLAY"])
        screen = self._display.screen()
        self.window = screen.root.create_window(
            *geometry, 0, screen.root_depth, event_mask=X.KeyPressMask | X.StructureNotifyMask
        )
        self.window.set_wm_name(title)
        self.window.map()
        self._display.sync()
        self._desktop = desktop
        desktop.await_window(title)
        desktop.run("xdotool", "windowfocus", "--sync", str(self.window.id))

    def keys_received(self):
        """How many key presses have arrived since the last call."""
        from Xlib import X

        self._display.sync()
        keys = 0
        while self._display.pending_events():
            keys += self._display.next_event().type == X.KeyPress
        return keys

    def has_focus(self):
        return self._display.get_input_focus().focus == self.window

    def close(self):
        self._display.close()


class WindowManager:
    """Requests to, and properties of, the window manager of a desktop."""

    def __init__(self, desktop):
        from Xlib import display

        self._display = display.Display(desktop.environment["DISPLAY"])
        self._root = self._display.screen().root

    def _atom(self, name):
        return self._display.intern_atom(name)

    def close_window(self, window):
        """As the operator does with the title bar."""
        from Xlib import X
        from Xlib.protocol import event

        message = event.ClientMessage(
            window=window,
            client_type=self._atom("_NET_CLOSE_WINDOW"),
            data=(32, [X.CurrentTime, 2, 0, 0, 0]),
        )
        mask = X.SubstructureRedirectMask | X.SubstructureNotifyMask
        self._root.send_event(message, event_mask=mask)
        self._display.sync()

    def minimise(self, window):
        from Xlib import X
        from Xlib.protocol import event

        message = event.ClientMessage(
            window=window,
            client_type=self._atom("WM_CHANGE_STATE"),
            data=(32, [3, 0, 0, 0, 0]),
        )
        mask = X.SubstructureRedirectMask | X.SubstructureNotifyMask
        self._root.send_event(message, event_mask=mask)
        self._display.sync()

    def states(self, window):
        found = self._display.create_resource_object("window", window).get_full_property(
            self._atom("_NET_WM_STATE"), 0
        )
        return {self._display.get_atom_name(atom) for atom in (found.value if found else [])}

    def stacking(self):
        """Window ids from the lowest to the highest."""
        found = self._root.get_full_property(self._atom("_NET_CLIENT_LIST_STACKING"), 0)
        return list(found.value) if found else []

    def close(self):
        self._display.close()


class Accessible:
    """The controls of the server's windows, by control name, over the accessibility bus."""

    def __init__(self, desktop):
        self._desktop = desktop
        self._agent = desktop.start(
            "/usr/bin/python3",
            os.path.join(os.path.dirname(os.path.abspath(__file__)), "accessibility_agent.py"),
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
        )

    def ask(self, control, **request):
        self._agent.stdin.write(json.dumps({"control": control, **request}) + "\n")
        self._agent.stdin.flush()
        return json.loads(self._agent.stdout.readline())

    def await_control(self, control, seconds=30.0):
        return await_true(
            lambda: (found := self.ask(control))["found"] and found, seconds, f"control {control}"
        )

    def text(self, control):
        """The text of a control, awaited where its window has only just appeared."""
        return self.await_control(control).get("text")

    def place(self, control):
        """Where the program itself believes a control to be."""
        return self.await_control(control)["extents"][:2]

    def is_showing(self, control):
        return self.ask(control).get("showing", False)

    def click(self, control, times=1):
        left, top, width, height = self.await_control(control)["extents"]
        self._desktop.click(left + width // 2, top + height // 2, times)

    def items(self, control):
        """The texts of a list's headings and cells, row by row."""
        return self.ask(control).get("children", [])

    def click_item(self, control, name, times=1):
        """Clicks the first heading or cell of a list with that text."""
        found = await_true(
            lambda: self.ask(control, item=name).get("item"), what=f"{name} in {control}"
        )
        left, top, width, height = found
        self._desktop.click(left + min(width // 2, 20), top + height // 2, times)

    def press(self, control):
        """Presses a button by its accessible action."""
        self.await_control(control)
        self.ask(control, action="Press")

    def enter(self, control, value):
        """Sets the text of a text box."""
        self.await_control(control)
        self.ask(control, value=value)

    def double_click(self, control):
        self.click(control, times=2)

    def close(self):
        self._agent.stdin.close()
        self._agent.wait(timeout=60)
