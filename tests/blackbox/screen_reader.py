#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Does the wizard's work with nothing but what a screen reader has: names, roles, actions, keys.

screen_reader.py PROGRAM
"""
import os
import pathlib
import sys
import tempfile

import desktop

SERVER, PROPERTY, HISTORY = "Device Server Information", "Property Information", "History Panel"
ALARM, DEVICES, INPUT, OUTPUT, WINDOW = "Alarm Watch Panel", "Device Panel", "Data Input", "Data Output", ""
# Everything that takes the focus, in the order of the Tab key: role, frame, names, each with its description.
GROUPS = [
    ("text", SERVER, "Export Name", "Local Name", "Number of Devices"),
    ("text", PROPERTY, "Property Name", "Description"),
    ("combo box", PROPERTY, "Access"), ("combo box", INPUT, "Data Format"), ("combo box", OUTPUT, "Data Format"),
    ("text", INPUT, "Max Data Size"), ("text", OUTPUT, "Max Data Size"),
    ("text", PROPERTY, "Max Value", "Min Value", "Units"),
    ("list", WINDOW, "Properties"), ("push button", WINDOW, "Add", "Remove", "Done"),
    ("text", "Project Directory", "Project Directory"), ("check box", WINDOW, "VB Project", "C Project"),
    ("check box", PROPERTY,
     "Property is Process|Check this if this property should supply .START, .STOP, PAUSE, .ABORT properties"),
    ("text", PROPERTY, "Number Steps :"),
    ("check box", PROPERTY, "Keep History|Check this to keep a local history of this property",
     "Alarm Watch|Check this to allow automatic alarm setting according to the supplied thresholds",
     "Device List|Check this if this Property should keep a device list independent of the device server"),
    ("combo box", PROPERTY, "Output ArrayType :"),
    ("text", HISTORY,
     "Archive Rate (secs)|Data will be committed to disk not more frequently than this interval",
     "Polling Rate (msec)|The local history server will poll the given property at this interval",
     "Archive Heartbeat (secs)|Data will be committed to disk no less frequently than this interval",
     "Ringbuffer Depth|Data will be kept in short-term ring buffer with this depth at the polling rate",
     "Long term Depth (months)|Data will be kept on the local disk for at least this period",
     "Tolerance|Data within tolerance (percent or absolute) will not be committed to disk (except at the heartbeat)",
     "Calling Device Name|The device name to be used by the local history server"),
    ("text", ALARM, "Calling Device Name|The device name to be used by the local alarm server",
     "Alarm System ID|System-wide Identifier for this category of alarms",
     "Severity (high)|severity to be used for too high or too low",
     "Counts Threshold|Alarm will only be set when it appears this many times consecutively",
     "Value too high|Threshold for value too high alarm", "Value too low|Threshold for value too Low alarm",
     "warning|Threshold for warn too high alarm", "warning|Threshold for warn too Low alarm"),
    ("text", DEVICES, "Device names", "selected"), ("radio button", DEVICES, "Server", "Property"),
    ("push button", WINDOW, "Edit"),
    ("text", ALARM, "Value normal|Required value for no alarm (only active if mask is non-Zero)",
     "mask|If non-Zero applies to read data and activates comparison to Normal value")]
CONTROLS = [(role, frame, *named.partition("|")[::2]) for role, frame, *names in GROUPS for named in names]
TABLES = {
    "exports.csv": [
        "EXPORT_NAME,LOCAL_NAME,PROPERTY,PROPERTY_SIZE,FORMAT,PROPERTY_INSIZE,INFORMAT,PROPERTY_ID,ACCESS,"
        "NUM_MODULES,DESCRIPTION,NUM_STEPS",
        "PUMPS,PUMEQM,STATE,1,short,0,NULL, 1,READ,3,[0:100 ]State of the pump,0",
        "PUMPS,PUMEQM,PRESSURE,3,float.CHANNEL,0,NULL, 2,READ, 3,[0:1000 mbar]Pressure,0",
        "PUMPS,PUMEQM,EVACUATE.START,1,short,1,short, 3,READ|WRITE, 3,[0:4 ]Start evacuation,4",
        "PUMPS,PUMEQM,EVACUATE.STOP,0,NULL,0,NULL, 4,WRITE, 3,[0:4 ]Stop evacuation,4",
        "PUMPS,PUMEQM,EVACUATE.PAUSE,0,NULL,0,NULL, 5,WRITE, 3,[0:4 ]Pause evacuation,4",
        "PUMPS,PUMEQM,EVACUATE.RESUME,0,NULL,0,NULL, 6,WRITE, 3,[0:4 ]Resume evacuation,4",
        "PUMPS,PUMEQM,EVACUATE.STATUS,1,short,0,NULL, 7,READ, 3,[0:4 ]Status of evacuation,4"],
    "history.csv": [
        "Index,Export Name,Local Name,Property,Device,Data Length,Format,Heartbeat,Polling Rate,Archive Rate,"
        "Tolerance,Short Depth,Long Depth",
        " 1,PUMPS,PUMEQM,PRESSURE,#0, 3,FLOAT.CHANNEL, 18000, 500, 10,10%, 600, 1"],
    "devices.csv": ["DEVICE_NUMBER,DEVICE_NAME", " 0,NORTH", " 1,EAST", " 2,WEST"]}
DEAD_ACUTE = 0xFE51
ADD = "Add New Property with these characteristics ?"
WORK = [
    ("act", "push button", "Done"),
    ("answer", "Server Setup Wizard", "Cancel", "You have not added any properties"),
    ("type", SERVER, "Export Name", "PUMPS"),
    ("shows", SERVER, "Local Name", "PUMEQM"),
    ("type", SERVER, "Number of Devices", "3"),
    ("type", DEVICES, "Device names", "NORTH\nEAST\nWEST"),
    ("type", PROPERTY, "Property Name", "STATE"),
    ("type", PROPERTY, "Description", "State of the pump"),
    ("choose", OUTPUT, "Data Format", "Integer"),
    ("act", "push button", "Add"),
    ("answer", ADD, "OK", "Keep History: No"),
    ("status", "1 property, 3 device names not yet written"),
    ("type", PROPERTY, "Property Name", "PRESSURE"),
    ("type", PROPERTY, "Description", "Pressure"),
    ("choose", OUTPUT, "Data Format", "Single"),
    ("type", OUTPUT, "Max Data Size", "3"),
    ("choose", PROPERTY, "Output ArrayType :", "CHANNEL"),
    ("type", PROPERTY, "Max Value", "1000"),
    ("type", PROPERTY, "Units", "mbar"),
    ("tick", "Keep History"),
    ("type", HISTORY, "Polling Rate (msec)", "500"),
    ("act", "push button", "Add"),
    ("answer", ADD, "OK", "Keep History: Yes"),
    ("status", "2 properties, 1 history row, 3 device names not yet written"),
    ("type", PROPERTY, "Property Name", "EVACUATE"),
    ("type", PROPERTY, "Description", "evacuation"),
    ("tick", "Property is Process"),
    ("type", PROPERTY, "Number Steps :", "4"),
    ("act", "push button", "Add"),
    ("answer", ADD, "OK"),
    ("status", "7 properties, 1 history row, 3 device names not yet written"),
    ("act", "list item", "[PUMPS] PRESSURE <Pressure>", "Properties"),
    ("shows", PROPERTY, "Property Name", "PRESSURE"),
    ("tick", "C Project"),
    ("act", "push button", "Done")]


def find_all(program):
    """The controls of the table, each once; a screen reader finds no others that take the focus."""
    seen = [(found, (found.getRoleName(), above[-1].name, program.named(found), found.description))
            for found, above in program.walk() if program.has(found, "focusable")
            and above[-1].getRoleName() != "list"]
    wrong = [f"{'missing' if c in CONTROLS else 'not expected'}: {c}"
             for c in sorted(set(CONTROLS) ^ {control for _, control in seen})]
    wrong += [f"{len(seen)} controls, and not {len(CONTROLS)}"] if len(seen) != len(CONTROLS) else []
    enabled = [c for c in CONTROLS if c[2] not in ("Number Steps :", "Output ArrayType :")]
    wrong += [f"enabled or disabled: {c}" for f, c in seen if program.has(f, "enabled") != (c in enabled)]
    by_control = {control: found for found, control in seen}
    return [by_control[c] for c in enabled if c in by_control], wrong


def reach_all(program, controls):
    program.focus(controls[0])
    for control in controls[1:]:
        program.key(desktop.TAB)
        program.until(f"focus on {program.named(control)} by Tab", lambda: program.has(control, "focused"))


def mark(program):
    """A value that would be refused says so, after its tool tip, and stops saying so."""
    field = program.find("text", "Severity (high)")
    for text, lines in (("much", 2), ("10", 1)):
        program.type(ALARM, "Severity (high)", text)
        program.until(f"{lines} lines of description", lambda: len(field.description.splitlines()) == lines)


def dead_key(program):
    """A letter made of two keys reaches the field."""
    field = program.find("text", "Description", PROPERTY)
    program.focus(field)
    program.key(DEAD_ACUTE, ord("e"))
    program.shows(PROPERTY, "Description", "\N{LATIN SMALL LETTER E WITH ACUTE}")


def main(path):
    desktop.enter("1600x1200")
    with tempfile.TemporaryDirectory(prefix="kova-") as name:
        home = pathlib.Path(name)
        project, copies = home / "PUMPS", home / "fec/PUMEQM"
        (home / "fec").mkdir()
        (home / "bin").mkdir()
        for generator in ("vbskelgen.exe", "cskelgen.exe"):
            (home / "bin" / generator).write_text(f'#!/bin/sh\necho "$@" > {home}/{generator}.started\n')
            (home / "bin" / generator).chmod(0o755)
        with desktop.Program(path, HOMEDRIVE=name, FEC_HOME=f"{name}/fec",
                             PATH=f"{name}/bin:{os.environ['PATH']}") as program:
            controls, wrong = find_all(program)
            print(*wrong, sep="\n", end="", flush=True)  # what comes next may end the run
            reach_all(program, controls)
            mark(program)
            dead_key(program)
            program.play(WORK)
            program.answer("Write to FEC_HOME repository?", "Yes", f"{copies}/")
            if code := program.process.wait(20):
                wrong.append(f"the program ended with {code}")
            started = {"vbskelgen.exe.started": f"{project}\n", "cskelgen.exe.started": f"{project} LINUX\n"}
            program.until("both generators", lambda: all(
                (home / f).is_file() and (home / f).stat().st_size for f in started))
        tables = {n: "".join(line + "\r\n" for line in lines) for n, lines in TABLES.items()}
        expected = started | {f"{f.relative_to(home)}/{n}": t for f in (project, copies) for n, t in tables.items()}
        found = {str(f.relative_to(home)): f.read_bytes().decode("latin1") for f in home.rglob("*")
                 if f.is_file() and f.parent.name != "bin"}
        wrong += [f"{name}:\n  expected {expected.get(name)}\n  found    {found.get(name)}"
                  for name in sorted(expected | found) if expected.get(name) != found.get(name)]
    print("\n".join(wrong) or f"{len(controls)} controls reached, {len(expected)} files as they must be")
    return bool(wrong)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
