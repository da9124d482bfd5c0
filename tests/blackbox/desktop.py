# SPDX-License-Identifier: MIT
"""A private desktop, and the wizard on it, seen and driven only through its accessibility tree."""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
TAB, END = 0xFF09, 0xFF57
SECOND_IN_MENU = (0xFFC7, 0xFF54, 0xFF0D)  # F10, Down, Enter
# How to get to a drop-down list: from a control ahead of it, by so many Tabs.
AHEAD_OF = {"Access": (("text", "Description"), 1), "Data Input": (("text", "Description"), 2),
            "Data Output": (("text", "Description"), 3), "Output ArrayType :": (("check box", "Device List"), 1)}


def enter(size, settings=None):
    """Runs the script on a desktop of its own, with screen, window manager and session bus, and ends with it."""
    if "KOVA_PRIVATE_DESKTOP" in os.environ:
        return
    with tempfile.TemporaryDirectory(prefix="kova-") as runtime:
        for name, text in (settings or {}).items():
            file = pathlib.Path(runtime, name)
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text)
        ours, theirs = os.pipe()
        screen = subprocess.Popen(
            ["Xvfb", "-displayfd", str(theirs), "-screen", "0", f"{size}x24", "-nolisten", "tcp"],
            pass_fds=[theirs], stderr=subprocess.DEVNULL)
        os.close(theirs)
        try:
            number = os.fdopen(ours).readline().strip()
            environment = dict(os.environ, KOVA_PRIVATE_DESKTOP="1", DISPLAY=f":{number}", LC_ALL="C.UTF-8",
                               XDG_RUNTIME_DIR=runtime, XDG_CONFIG_HOME=runtime,
                               XDG_DATA_HOME=runtime, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
            for name in ("WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "FEC_HOME", "FECDB"):
                environment.pop(name, None)
            manager = subprocess.Popen(["openbox"], env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            code = subprocess.call(["dbus-run-session", "--", sys.executable, "-B", *sys.argv], env=environment)
        finally:
            for process in (manager, screen):
                process.terminate()
                process.wait()
    sys.exit(code)


class Program:
    """The running wizard. What it shows is looked up anew each time."""

    def __init__(self, path, **environment):
        import pyatspi  # only there on the private desktop does it find a bus
        self.atspi = pyatspi
        self.process = subprocess.Popen([path], env=dict(os.environ, **environment))
        self.until("the program on the bus", lambda: self.application() is not None)
        self.until("its window", lambda: self.application().childCount > 0)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()

    def until(self, what, holds, seconds=20):
        """Waits for something that must come soon, and gives its value back."""
        end = time.monotonic() + seconds
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

    def walk(self, start=None, above=()):
        """What is shown, each with what it lies in; the entries of drop-down lists are left out."""
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
            return next((a for a, above in self.walk() if a.getRoleName() == role and self.named(a) == name
                         and frame in (None, above[-1].name)), None)
        return self.until(f"{role} '{name}'", search)

    def has(self, found, state):
        return found.getState().contains(getattr(self.atspi, "STATE_" + state.upper()))

    def key(self, *symbols):
        for symbol in symbols:
            self.atspi.Registry.generateKeyboardEvent(symbol, None, self.atspi.KEY_SYM)

    def focus(self, found):
        found.queryComponent().grabFocus()
        self.until(f"focus on {found.name}", lambda: self.has(found, "focused"))

    def play(self, acts):
        """Does one act after the other; each row is the name of one of the operations below, and its arguments."""
        for act, *arguments in acts:
            getattr(self, act)(*arguments)

    def act(self, role, name, frame=None):
        """Presses, toggles, selects: the first action that the control offers."""
        self.find(role, name, frame).queryAction().doAction(0)

    def tick(self, name):
        self.act("check box", name)
        self.until(f"{name} ticked", lambda: self.has(self.find("check box", name), "checked"))

    def type(self, frame, name, text):
        """Letter by letter, as the wizard reacts to each, in place of what stands in the field."""
        field = self.find("text", name, frame)
        self.focus(field)
        field.queryEditableText().setTextContents(text[:1])
        for letter in text[1:]:
            field.queryEditableText().insertText(field.queryText().characterCount, letter, 1)
        self.shows(frame, name, text)

    def shows(self, frame, name, text):
        field = self.find("text", name, frame).queryText()
        self.until(f"'{text}' in {name}", lambda: field.getText(0, -1) == text)

    def choose(self, frame, name, entry):
        """By keys: a drop-down list takes the focus from the Tab key alone, and letters find the entry."""
        ahead, tabs = AHEAD_OF[name if frame == "Property Information" else frame]
        self.focus(self.find(*ahead))
        self.key(*tabs * [TAB])
        box = self.find("combo box", name, frame)
        self.until(f"focus on {name}", lambda: self.has(box, "focused"))
        self.key(*map(ord, entry.lower()))
        self.until(f"{entry} in {name}", lambda: box.name == entry)

    def status(self, part):
        """Waits for what the status line must say."""
        self.until(f"status line '{part}'", lambda: any(
            part in a.name for a, _ in self.walk() if a.getRoleName() == "label"))

    def answer(self, title, button, part=""):
        """Waits for a message whose text has the given part, and presses its button."""
        def box():
            return next((w for w in self.windows() if w.getRoleName() == "alert" and w.name == title), None)
        parts = [a for a, _ in self.walk(self.until(f"message '{title}'", box))]
        texts = [a.name for a in parts if a.getRoleName() == "label"]
        if not any(part in text for text in texts):
            raise AssertionError(f"message '{title}' lacks '{part}': {texts}")
        next(a for a in parts if a.name == button).queryAction().doAction(0)
        self.until(f"end of message '{title}'", lambda: box() is None)
