# SPDX-License-Identifier: MIT
"""A private desktop, and the wizard on it, seen and driven only through its accessibility tree."""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
TAB, HOME, DOWN, END = 0xFF09, 0xFF50, 0xFF54, 0xFF57
SECOND_IN_MENU = (0xFFC7, DOWN, 0xFF0D)  # F10, Down, Enter
PROPERTY, INPUT, OUTPUT = "Property Information", "Data Input", "Data Output"
# A drop-down list takes the focus from the Tab key alone: each with the control ahead of it.
AHEAD_OF = {
    (PROPERTY, "Access"): ("text", PROPERTY, "Description"),
    (INPUT, "Data Format"): ("combo box", PROPERTY, "Access"),
    (OUTPUT, "Data Format"): ("combo box", INPUT, "Data Format"),
    (PROPERTY, "Output ArrayType :"): ("check box", PROPERTY, "Device List")}
# A window that comes ahead of the window manager is not brought to the front.
SESSION = """
openbox --startup "touch '$XDG_RUNTIME_DIR/managed'" >/dev/null 2>&1 &
until [ -e "$XDG_RUNTIME_DIR/managed" ]; do sleep 0.1; done
exec "$0" "$@"
"""
PATIENCE = 100  # seconds for what must come soon, on a machine that has much else to do


def enter(size, settings=None):
    """Runs the script on a desktop of its own, with screen, window manager and session bus, and
    ends with it."""
    if "KOVA_PRIVATE_DESKTOP" in os.environ:
        return
    with tempfile.TemporaryDirectory(prefix="kova-") as runtime:
        for name, text in (settings or {}).items():
            file = pathlib.Path(runtime, name)
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text)
        environment = dict(
            os.environ, KOVA_PRIVATE_DESKTOP="1", LC_ALL="C.UTF-8", XDG_RUNTIME_DIR=runtime,
            XDG_CONFIG_HOME=runtime, XDG_DATA_HOME=runtime, XDG_STATE_HOME=runtime,
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_QPA_PLATFORM="xcb")
        for name in ("WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "FEC_HOME", "FECDB"):
            environment.pop(name, None)
        with subprocess.Popen(
                ["Xvfb", "-displayfd", "1", "-screen", "0", f"{size}x24", "-nolisten", "tcp"],
                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True) as screen:
            environment["DISPLAY"] = ":" + screen.stdout.readline().strip()
            script = [sys.executable, "-B", *sys.argv]
            try:
                code = subprocess.call(["dbus-run-session", "--", "sh", "-c", SESSION, *script],
                                       env=environment)
            finally:
                screen.terminate()  # the window manager ends with it
    sys.exit(code)


def role_of(found):
    """What Debian 12 calls it."""
    name = found.getRoleName()
    return "push button" if name == "button" else name


class Program:
    """The running wizard. What it shows is looked up each time."""

    def __init__(self, path, **environment):
        import pyatspi  # only there on the private desktop does it find a bus
        from gi.repository import GLib
        self.atspi, self.loop = pyatspi, GLib.MainContext.default()
        self.process = subprocess.Popen([path], env=dict(os.environ, **environment))
        self.until("the program's window in front", lambda: self.in_front())

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()

    def until(self, what, holds):
        """Waits for something that must come soon, and gives its value back."""
        end = time.monotonic() + PATIENCE
        while True:
            try:
                if value := holds():
                    return value
            except (LookupError, RuntimeError):
                pass  # what was asked is not there yet, or no more
            if time.monotonic() > end:
                raise AssertionError(f"did not come: {what}")
            time.sleep(0.02)

    def application(self):
        desktop = self.atspi.Registry.getDesktop(0)
        return next((a for a in desktop if a and a.get_process_id() == self.process.pid), None)

    def windows(self):
        return [window for window in self.application() or () if window]

    def in_front(self):
        return next((window for window in self.windows() if self.has(window, "active")), None)

    def walk(self, start=None, above=()):
        """What is shown, each with what it lies in, but not the entries of drop-down lists."""
        start = start or self.application()
        yield start, above
        for child in start if start.getRoleName() != "combo box" else ():
            if child:
                yield from self.walk(child, above + (start,))

    def named(self, found):
        """Its label's caption, or its own name."""
        labels = [r.getTarget(0) for r in found.getRelationSet()
                  if r.getRelationType() == self.atspi.RELATION_LABELLED_BY]
        names = [label.name for label in labels if label.getRoleName() == "label"]
        return names[0] if names else found.name

    def find(self, role, name, frame=None):
        def search():
            return next((a for a, above in self.walk()
                         if role_of(a) == role and self.named(a) == name
                         and frame in (None, above[-1].name)), None)
        return self.until(f"{role} '{name}'", search)

    def has(self, found, state):
        return found.getState().contains(getattr(self.atspi, "STATE_" + state.upper()))

    def key(self, *symbols):
        for symbol in symbols:
            self.atspi.Registry.generateKeyboardEvent(symbol, None, self.atspi.KEY_SYM)

    def focused(self, found):
        self.until(f"focus on {self.named(found)}", lambda: self.has(found, "focused"))
        return found

    def focus(self, role, frame, name):
        """The control, which then has the focus."""
        found = self.find(role, name, frame)
        if role == "combo box":
            self.focus(*AHEAD_OF[frame, name])
            self.key(TAB)
        else:
            found.queryComponent().grabFocus()
        return self.focused(found)

    def play(self, acts):
        """Does one act after the other; each row is the name of an operation and its arguments."""
        for act, *arguments in acts:
            getattr(self, act)(*arguments)

    def press(self, found):
        """The first action of a control: a button that is pressed before its window is in front
        comes up again without a click."""
        window = found
        while window.parent.getRoleName() != "application":
            window = window.parent
        self.until(f"'{window.name}' in front", lambda: self.has(window, "active"))
        found.queryAction().doAction(0)

    def act(self, role, name, frame=None):
        self.press(self.find(role, name, frame))

    def tick(self, name):
        self.act("check box", name)
        self.until(f"{name} ticked", lambda: self.has(self.find("check box", name), "checked"))

    def type(self, frame, name, text):
        """Letter by letter, as the wizard reacts to each, in place of what stands in the field."""
        field = self.focus("text", frame, name)
        field.queryEditableText().setTextContents(text[:1])
        for letter in text[1:]:
            field.queryEditableText().insertText(field.queryText().characterCount, letter, 1)
        self.shows(frame, name, text)

    def shows(self, frame, name, text):
        field = self.find("text", name, frame).queryText()
        self.until(f"'{text}' in {name}", lambda: field.getText(0, -1) == text)

    def choose(self, frame, name, entry):
        """Step by step: of letters in a row, a slow machine forgets the first ones."""
        box = self.focus("combo box", frame, name)
        entries = [line.name for line in box[0]]
        self.key(HOME)
        self.until(f"{entries[0]} in {name}", lambda: box.name == entries[0])
        for step in entries[1:entries.index(entry) + 1]:
            self.key(DOWN)
            self.until(f"{step} in {name}", lambda: box.name == step)

    def status(self, part):
        """Waits for what the status line must say."""
        self.until(f"status line '{part}'", lambda: any(
            part in a.name for a, _ in self.walk() if a.getRoleName() == "notification"))

    def listen(self):
        """Lists from now on, as (event, role, name), what gets the focus and what comes up."""
        heard = []

        def hear(event):
            if event.detail1 and event.host_application == self.application():
                what = event.type.minor or event.type.major
                heard.append((what, event.source.getRoleName(), event.source.name))
        self.atspi.Registry.registerEventListener(
            hear, "object:state-changed:focused", "object:state-changed:showing")
        return heard

    def hears(self, heard, what, role, part):
        """Waits for an event; those up to it are forgotten."""
        def came():
            self.atspi.Registry.pumpQueuedEvents()
            while self.loop.iteration(False):
                pass
            return next((i for i, (event, source, name) in enumerate(heard)
                         if (event, source) == (what, role) and part in name), None) is not None
        self.until(f"{what} {role} '{part}' among {heard}", came)

    def answer(self, title, button, part=""):
        """Waits for a message whose text has the given part, and presses its button."""
        def box():
            return next((w for w in self.windows()
                         if w.getRoleName() == "alert" and w.name == title), None)

        def button_of_message():
            parts = [a for a, _ in self.walk(box())]
            told = any(a.getRoleName() == "label" and part in a.name for a in parts)
            return told and next((a for a in parts if a.name == button), None)
        self.press(self.until(f"message '{title}' with '{part}'", button_of_message))
        self.until(f"end of message '{title}'", lambda: box() is None)
