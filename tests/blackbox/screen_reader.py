#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Does the wizard's work with nothing but what a screen reader has: names, roles, actions, keys.

screen_reader.py PROGRAM
"""
import collections
import pathlib
import shutil
import subprocess
import sys
import tempfile

import desktop
from desktop import INPUT, OUTPUT, PROPERTY

SERVER, DEVICES, WINDOW = "Device Server Information", "Device Panel", ""
HISTORY, ALARM = "History Panel", "Alarm Watch Panel"
# What takes the focus, in the order of the Tab key.
GROUPS = [
    ("text", SERVER, "Export Name", "Local Name", "Number of Devices"),
    ("text", PROPERTY, "Property Name", "Description"),
    ("combo box", PROPERTY, "Access"),
    ("combo box", INPUT, "Data Format"),
    ("combo box", OUTPUT, "Data Format"),
    ("text", INPUT, "Max Data Size"),
    ("text", OUTPUT, "Max Data Size"),
    ("text", PROPERTY, "Max Value", "Min Value", "Units"),
    ("list", WINDOW, "Properties"),
    ("push button", WINDOW, "Add", "Remove", "Done"),
    ("text", "Project Directory", "Project Directory"),
    ("check box", WINDOW, "VB Project", "C Project"),
    ("check box", PROPERTY, "Property is Process"),
    ("text", PROPERTY, "Number Steps :"),
    ("check box", PROPERTY, "Keep History", "Alarm Watch", "Device List"),
    ("combo box", PROPERTY, "Output ArrayType :"),
    ("text", HISTORY, "Archive Rate (secs)", "Polling Rate (msec)", "Archive Heartbeat (secs)",
     "Ringbuffer Depth", "Long term Depth (months)", "Tolerance", "Calling Device Name"),
    ("text", ALARM, "Calling Device Name", "Alarm System ID", "Severity (high)",
     "Counts Threshold", "Value too high", "Value too low", "warning", "warning"),
    ("text", DEVICES, "Device names", "selected"),
    ("radio button", DEVICES, "Server", "Property"),
    ("push button", WINDOW, "Edit"),
    ("text", ALARM, "Value normal", "mask"),
    ("push button", WINDOW, "Review", "Undo", "Redo")]
CONTROLS = [(role, frame, name) for role, frame, *names in GROUPS for name in names]
DISABLED = [("text", PROPERTY, "Number Steps :"), ("combo box", PROPERTY, "Output ArrayType :"),
            ("push button", WINDOW, "Undo"), ("push button", WINDOW, "Redo")]
DONE = [
    ("act", "list item", "[MAGNET] STATE <State word of each supply>", "Properties"),
    ("type", PROPERTY, "Description", "State"),
    ("act", "push button", "Edit"),
    ("status", "1 property"),
    ("act", "push button", "Done"),
    ("answer", "KOVA Device Server Setup Wizard", "OK", "Could not start vbskelgen.exe")]


def find_all(program):
    """What takes the focus now, in the order of the table; a screen reader finds nothing else."""
    found = collections.defaultdict(list)
    for control, above in program.walk():
        if program.has(control, "focusable") and above[-1].getRoleName() != "list":
            key = (desktop.role_of(control), above[-1].name, program.named(control))
            found[key].append(control)
    counts = {key: len(controls) for key, controls in found.items()}
    expect("controls", dict(collections.Counter(CONTROLS)), counts)
    disabled = [key for key in CONTROLS if not program.has(found[key][0], "enabled")]
    expect("disabled", DISABLED, disabled)
    return [found[key].pop(0) for key in CONTROLS if key not in DISABLED]


def reach_all(program, controls):
    program.focus(*CONTROLS[0])
    for control in controls[1:]:
        program.key(desktop.TAB)
        program.focused(control)


def speaks(program):
    """What comes without the focus is told, and no focus where there is none."""
    heard = program.listen()
    program.type(SERVER, "Export Name", "MAGNET")
    program.hears(heard, "showing", "notification", "Project read: 8 properties")
    expect("lines in focus", [], [event for event in heard if event[1] == "list item"])
    program.type(PROPERTY, "Property Name", "A,B")
    program.hears(heard, "showing", "notification", "A comma splits this field")
    program.choose(PROPERTY, "Access", "WRITE")
    program.hears(heard, "focused", "list item", "WRITE")


def expect(what, wanted, found):
    if wanted != found:
        raise AssertionError(f"{what}:\n  expected {wanted}\n  found    {found}")


def expect_icon():
    """The window brings its own, whatever icon themes and plug-ins are installed."""
    active = subprocess.check_output(["xprop", "-root", "_NET_ACTIVE_WINDOW"], text=True)
    icon = ["xprop", "-id", active.split()[-1], "_NET_WM_ICON"]
    expect("icon", True, "Icon (48 x 48)" in subprocess.check_output(icon, text=True))


def main(path):
    desktop.enter("1600x1200")
    with tempfile.TemporaryDirectory(prefix="kova-") as name:
        shutil.copytree(desktop.ROOT / "examples/MAGNET", f"{name}/MAGNET")
        with desktop.Program(path, HOMEDRIVE=name) as program:
            expect_icon()
            reach_all(program, find_all(program))
            speaks(program)
            program.play(DONE)
            expect("exit", 0, program.process.wait(desktop.PATIENCE))
        written = pathlib.Path(name, "MAGNET/exports.csv").read_text(encoding="latin-1")
        expect("row", "MAGNET,MAGEQM,STATE,4,short.CHANNEL,0,NULL, 6,READ, 4,[0:250 A]State,0",
               written.splitlines()[6])


if __name__ == "__main__":
    main(sys.argv[1])
