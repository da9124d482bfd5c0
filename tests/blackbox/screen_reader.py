#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Does the wizard's work with nothing but what a screen reader has: names, roles, actions, keys.

screen_reader.py PROGRAM
"""
import collections
import os
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
    ("push button", WINDOW, "Review")]
CONTROLS = [(role, frame, name) for role, frame, *names in GROUPS for name in names]
DISABLED = [("text", PROPERTY, "Number Steps :"), ("combo box", PROPERTY, "Output ArrayType :")]
DEAD_ACUTE = 0xFE51
WORK = [
    ("act", "push button", "Done"),
    ("answer", "Server Setup Wizard", "Cancel", "You have not added any properties"),
    ("type", SERVER, "Export Name", "PUMPS"),
    ("type", SERVER, "Number of Devices", "3"),
    ("type", DEVICES, "Device names", "NORTH\nEAST\nWEST"),
    ("type", PROPERTY, "Property Name", "PRESSURE"),
    ("type", PROPERTY, "Description", "Pressure"),
    ("choose", OUTPUT, "Data Format", "Single"),
    ("tick", "Keep History"),
    ("act", "push button", "Add"),
    ("answer", "Add New Property with these characteristics ?", "OK", "Keep History: Yes"),
    ("status", "1 property, 1 history row, 3 device names not yet written"),
    ("act", "list item", "[PUMPS] PRESSURE <Pressure>", "Properties"),
    ("act", "push button", "Done"),
    ("answer", "Write to FEC_HOME repository?", "Yes", "fec/PUMEQM/ ?")]
LAST_LINES = {
    "exports.csv": "PUMPS,PUMEQM,PRESSURE,1,float,0,NULL, 1,READ,3,[0:100 ]Pressure,0",
    "history.csv": " 1,PUMPS,PUMEQM,PRESSURE,#0, 1,FLOAT, 18000, 1000, 10,10%, 600, 1",
    "devices.csv": " 2,WEST"}


def find_all(program):
    """What takes the focus now, in the order of the table; a screen reader finds nothing else."""
    found = collections.defaultdict(list)
    for control, above in program.walk():
        if program.has(control, "focusable") and above[-1].getRoleName() != "list":
            key = (control.getRoleName(), above[-1].name, program.named(control))
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


def dead_key(program):
    """A letter made of two keys reaches the field."""
    program.focus("text", PROPERTY, "Description")
    program.key(DEAD_ACUTE, ord("e"))
    program.shows(PROPERTY, "Description", "\N{LATIN SMALL LETTER E WITH ACUTE}")


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


def told(*question):
    return subprocess.check_output(["xprop", *question], text=True)


def expect_icon():
    """The window brings its own, whatever icon themes and plug-ins are installed."""
    window = told("-root", "_NET_ACTIVE_WINDOW").split()[-1]
    expect("icon", True, "Icon (48 x 48)" in told("-id", window, "_NET_WM_ICON"))


def main(path):
    desktop.enter("1600x1200")
    with tempfile.TemporaryDirectory(prefix="kova-") as name:
        shutil.copytree(desktop.ROOT / "examples/MAGNET", f"{name}/MAGNET")
        with desktop.Program(path, HOMEDRIVE=name) as program:
            speaks(program)
    with tempfile.TemporaryDirectory(prefix="kova-") as name:
        home = pathlib.Path(name)
        (home / "fec").mkdir()
        (home / "bin").mkdir()
        generator = home / "bin/vbskelgen.exe"
        generator.write_text(f'#!/bin/sh\necho "$@" > {home}/new\nmv {home}/new {home}/started\n')
        generator.chmod(0o755)
        with desktop.Program(path, HOMEDRIVE=name, FEC_HOME=f"{name}/fec",
                             PATH=f"{name}/bin:{os.environ['PATH']}") as program:
            expect_icon()
            reach_all(program, find_all(program))
            dead_key(program)
            program.play(WORK)
            expect("exit", 0, program.process.wait(desktop.PATIENCE))
            program.until("the generator", (home / "started").exists)
        expected = {f"{folder}/{table}": line for folder in ("PUMPS", "fec/PUMEQM")
                    for table, line in LAST_LINES.items()}
        expected["started"] = f"{home}/PUMPS"
        found = {str(f.relative_to(home)): f.read_text().splitlines()[-1]
                 for f in home.rglob("*") if f.is_file() and f.parent.name != "bin"}
        expect("last lines", expected, found)


if __name__ == "__main__":
    main(sys.argv[1])
