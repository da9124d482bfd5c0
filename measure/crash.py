# SPDX-License-Identifier: MIT
"""What a crash may leave behind each system call of a run, and what is lost there. What was flushed
is there. Of the bytes and names that came later each may have reached the disk or not, in any
order, since nothing but a flush orders them."""
import collections
import copy
import functools
import os
import pathlib
import random
import re

import page
from wizard import ENTER, Home

Call = collections.namedtuple("Call", "name path given")  # given: bytes of whatever is meant

GONE, COMPLETE, HALF, ZEROS = range(4)  # states that any file with unflushed bytes may be in
SILENT = {"close", "fchmod", "fchown", "fcntl", "flock", "futimens", "opendir", "read", "stat"}
NAMELESS = os.O_TMPFILE & ~os.O_DIRECTORY  # the flag of a file that gets its name once complete
FEW = 8  # unflushed names of a folder of which every subset is built: 256


def applied(content, writes):
    """The content after writes of (place, bytes); bytes None cuts or lengthens to the place."""
    for place, data in writes:
        before = content[:place].ljust(place, b"\0")
        content = before if data is None else before + data + content[place + len(data):]
    return content


def changed(names, change):
    """Names of a folder after a change, which is some (name, node); node None removes."""
    return {name: node for name, node in (names | dict(change)).items() if node}


class File:
    """Flushed bytes, and the writes since, from the beginning to the end of a file."""

    def __init__(self, content=b""):
        self.flushed, self.pending, self.size, self.known = content, [], len(content), [content] * 4

    def write(self, place, data):
        self.pending.append((place, data))
        self.size = place + len(data or b"")
        self.known = None

    def flush(self):
        self.__init__(self.forms()[COMPLETE])

    def forms(self):
        """What a crash may leave of it: the four states above, then other cuts and holes."""
        if self.known is None:
            *first, (place, data) = self.pending
            zeros = [(place, data and bytes(len(data))) for place, data in self.pending]
            variants = [[], self.pending, first + [(place, data and data[:len(data) // 2])], zeros]
            for i, (place, data) in enumerate(self.pending):
                head, tail = self.pending[:i], self.pending[i + 1:]
                for size in (0, 1, len(data) - 1) if data else (0,):
                    variants.append(head + [(place, (data or b"")[:size])])
                variants.append(head + [zeros[i]] + tail)
            forms = [applied(self.flushed, variant) for variant in variants]
            self.known = forms[:4] + [f for f in dict.fromkeys(forms[4:]) if f not in forms[:4]]
        return self.known


class Folder:
    """Flushed names, and the changes since."""

    def __init__(self, names=()):
        self.names, self.pending = dict(names), []
        self.flushed = self.names.copy()

    def change(self, *change):
        self.pending.append(change)
        self.names = changed(self.names, change)

    def flush(self):
        self.__init__(self.names)

    def kept(self, mask):
        """The names where of the changes since those have arrived whose bits are in the mask."""
        arrived = [change for i, change in enumerate(self.pending) if mask >> i & 1]
        return functools.reduce(changed, arrived, self.flushed)

    def every(self):
        return (1 << len(self.pending)) - 1

    def masks(self, few):
        count, every = len(self.pending), self.every()
        if count <= few:
            return list(range(every + 1))
        prefixes = [(1 << i) - 1 for i in range(count + 1)]
        return prefixes + [mask for i in range(count) for mask in (1 << i, every & ~(1 << i))]


def is_silent(call):
    """A call that changes and flushes nothing."""
    makes_one = os.O_CREAT | NAMELESS
    return call.name in SILENT or (call.name == "open" and not int(call.given) & makes_one)


def is_flush(call):
    return call.name in ("fsync", "syncfs")


def load(path):
    if not path.is_dir():
        return File(path.read_bytes())
    return Folder((entry.name, load(entry)) for entry in path.iterdir())


class Disk:
    """The folder `home`, changed and flushed by one recorded call after the other."""

    def __init__(self, home):
        self.home, self.root = str(home), load(home)
        self.nameless = None  # the file without a name that is being written

    def find(self, path):
        """The folder that has the path's last name, the name, and what it names; for `home` itself
        the name ''."""
        folder, steps = self.root, os.path.relpath(path, self.home).split("/")
        for step in steps[:-1]:
            folder = folder.names[step]
        if path.endswith(" (deleted)"):
            return folder, "", self.nameless
        name = "" if steps == ["."] else steps[-1]
        return folder, name, folder.names.get(name) if name else folder

    def take(self, call):
        """Carries out a call; an unknown one fails. Returns the path that it changes in the end."""
        path = call.given.decode() if call.name in ("rename", "linkat") else call.path
        folder, name, node = self.find(path)
        match call.name:
            case "open" if int(call.given) & NAMELESS:
                self.nameless = File()
            case "open" if not node:
                folder.change((name, File()))
            case "open":
                pass
            case "write" | "copy_file_range":
                node.write(node.size, call.given)
            case "ftruncate":
                node.write(int(call.given), None)
            case "fsync":
                node.flush()
            case "syncfs":
                # The repository may well be on another disk than the projects.
                top = os.path.relpath(call.path, self.home).split("/")[0]
                for below in nodes(self.root.names.get(top, self.root)):
                    below.flush()
            case "unlink":
                folder.change((name, None))
            case "mkdir":
                folder.change((name, Folder()))
            case "linkat":
                folder.change((name, self.nameless))
            case "rename":
                source, old, moved = self.find(call.path)
                assert folder is source, "a rename between folders is two changes"
                folder.change((old, None), (name, moved))
            case "saved":  # another program has saved a file well: bytes and name are flushed
                folder.pending = [[entry for entry in change if entry[0] != name]
                                  for change in folder.pending]
                folder.names[name] = folder.flushed[name] = File(call.given)
            case _:
                raise AssertionError(f"unknown call: {call.name}")
        return os.path.relpath(path, self.home)

    def files(self, masks, forms):
        """Bytes by path where each folder has its mask and each file its form."""
        result, ahead = {}, [("", self.root)]
        while ahead:
            path, folder = ahead.pop()
            names = folder.kept(masks[folder]) if folder in masks else folder.names
            for name, node in names.items():
                if isinstance(node, Folder):
                    ahead.append((path + name + "/", node))
                else:
                    result[path + name] = node.forms()[forms(node)]
        return result

    def present(self):
        """What the programs see."""
        return self.files({}, lambda _: COMPLETE)

    def states(self, chance, rounds, few):
        """Every state that a crash may leave now, as bytes by path; some come more than once."""
        pending = [node for node in nodes(self.root) if node.pending]
        folders = [node for node in pending if isinstance(node, Folder)]
        files = [node for node in pending if isinstance(node, File)]
        for base in ({folder: folder.every() for folder in folders}, dict.fromkeys(folders, 0)):
            for form in (GONE, COMPLETE, HALF, ZEROS):
                yield self.files(base, lambda _, form=form: form)
                for folder in folders:
                    for mask in folder.masks(few):
                        yield self.files(base | {folder: mask}, lambda _, form=form: form)
            for file in files:
                for form in range(len(file.forms())):
                    for rest in (GONE, COMPLETE):
                        yield self.files(base, lambda node, file=file, form=form, rest=rest:
                                         form if node is file else rest)
        for _ in range(rounds if pending else 0):
            masks = {folder: chance.getrandbits(len(folder.pending)) for folder in folders}
            forms = {file: chance.randrange(len(file.forms())) for file in files}
            yield self.files(masks, lambda node, forms=forms: forms.get(node, COMPLETE))


def nodes(top):
    """Every file and folder that the present, the flushed or a pending name may lead to."""
    found, ahead = {}, [top]
    while ahead:
        node = ahead.pop()
        if node and node not in found:
            found[node] = True
            if isinstance(node, Folder):
                ahead += [*node.names.values(), *node.flushed.values()]
                ahead += [below for change in node.pending for _, below in change]
    return list(found)


@functools.cache
def belongs_to(path):
    """The file itself, or the file of which it is a backup."""
    return re.sub(r"(?s)(.*)-\d{10}(\.[^/.]+)", r"\1\2", path)


@functools.cache
def is_table(path):
    tables = r"(.*/)?(exports|history|almwatch|devices|.+-names|.+-devices)\.csv"
    return re.fullmatch(tables, path) is not None and belongs_to(path) == path


class Rules:
    """What must hold in any state of one run. `versions` are all files by their paths at the times
    when every table was complete: before, after each part of the run, and in the end."""

    def __init__(self, versions):
        self.versions = versions
        self.tables = sorted({path for files in versions for path in files if is_table(path)})
        # (table, bytes, which): to be complete in the table or in a backup; of the repository
        # nothing but the present table is kept. Waiting are those to come once the wizard replaces
        # the table.
        self.waiting, self.needed = [], [
            (path, content, "as it was before the run") for path, content in versions[0].items()
            if is_table(path) and not path.startswith("fec/")]
        self.lasting = {path: content for path, content in versions[0].items()
                        if not is_table(path)}

    def follow(self, call, path, content):
        """The wizard has changed a file; or a colleague has replaced a table: what he replaced is
        up to him until the wizard, which has a backup of it, replaces the table in turn."""
        if call.name == "saved":
            self.waiting += [need for need in self.needed if need[0] == path]
            self.needed = [need for need in self.needed if need[0] != path]
            self.needed.append((path, content, "as the colleague saved it"))
        else:
            self.needed += [need for need in self.waiting if need[0] == path]
            self.waiting = [need for need in self.waiting if need[0] != path]

    def faults(self, state, ended):
        """What is wrong in a state."""
        kept = {(belongs_to(path), content) for path, content in state.items()}
        found = [f"{path} {which} is nowhere" for path, content, which in self.needed
                 if (path, content) not in kept]
        found += [f"{path} is not as it was" for path, content in self.lasting.items()
                  if state.get(path, EXPIRED.get(path)) != content]
        for path in self.tables:
            if all(state.get(path) != version.get(path) for version in self.versions):
                found.append(f"{path} is neither the old nor the new one")
            if ended and state.get(path) != self.versions[-1].get(path):
                found.append(f"{path} is not the new one when Done is through")
        return found


NEW = [ENTER[0], "type ExportName NEW", "type PropertyName P",
       "click HistoryCheck", "click AlarmWatchCheck", "click DeviceListCheck", "click EditCmd"]
LEAVE = ["time 1700000050", "click ProjectDir", "type ProjectDir {home}"]
RETURN = ["time 1700000060", "type ProjectDir {home}/MAGNET"]
EDIT = ["time 1700000100", "select 6", "type PropertyDescription Field at the four probes",
        "type deviceNamesInputText N\r\nE\r\n", "leave deviceNamesInputText", "click EditCmd",
        "type PropertyName NEW", "click HistoryCheck", "click AlarmWatchCheck", "click EditCmd",
        "type NumDevices 5", "click ServerOption", "click DeviceListCheck",
        "type deviceNamesInputText A\r\nB\r\n", "leave deviceNamesInputText",
        "select 7", "type PropertyName SWEEP", "click ProcessCheck", "click EditCmd"]
DONE = ["time 1700000200", "answer yes", "click Command1"]
COLLEAGUE = {"MAGNET/history.csv": b"Index,a colleague's\r\n" * 20,
             "MAGNET/devices.csv": b"DEVICE_NUMBER,a colleague's\r\n" * 20}
FORMER_COPIES = {f"fec/MAGEQM/{table}.csv": b"of last year" * 20
                 for table in ("exports", "history", "devices", "FIELD-names")}
EXPIRED = {"MAGNET/exports-1600000000.csv": b"long past"}
OTHERS = {"MAGNET/invoice.pdf": b"%PDF" * 20000, **EXPIRED,
          "MAGNET/exports-1699990000.csv": b"of this morning", "fec/MAGEQM.txt": b"read me"}
# What is there besides the project, and who does what: actions at the wizard, or files that a
# colleague saves.
RUNS = {
    "a new project": ({}, [NEW, DONE]),
    "a new folder of the repository": ({}, [ENTER + EDIT, DONE]),
    "the project entered twice": (FORMER_COPIES, [ENTER + LEAVE + RETURN + EDIT, DONE]),
    "two tables saved by a colleague before Done": (FORMER_COPIES, [ENTER + EDIT, COLLEAGUE, DONE])}


def record(others, parts):
    """The disk before a run, its calls, and every file at its beginning and after each part."""
    with Home() as home:
        home.write(OTHERS | others)
        disk, calls, versions = Disk(home.path), [], [home.files()]
        program = home.start()
        for part in parts:
            if isinstance(part, dict):
                home.write(part)
                calls += [Call("saved", str(home.path / name), part[name]) for name in part]
            else:
                for line in home.send(program, part, "calls"):
                    name, path, given = line.rstrip("\n").split("\t")
                    calls.append(Call(name, path, bytes.fromhex(given)))
            versions.append(home.files())
        said = home.finish(program, [])
        assert "ended" in said, "the undisturbed run does not end: " + said
        return disk, [call for call in calls if not is_silent(call)], versions


def crash(name, disk, calls, versions, quick):
    """Builds every state after each call. Returns their number, that of the states with a loss, and
    each loss with one of its states. Quick are those before each flush, among which are most of
    those since the one before."""
    disk, rules, chance = copy.deepcopy(disk), Rules(versions), random.Random(name)
    losses, lossy, seen = {}, 0, set()
    for number, call in enumerate(calls, 1):
        path = disk.take(call)
        present, ended = disk.present(), number == len(calls)
        rules.follow(call, path, present.get(path))
        if quick and not ended and not is_flush(calls[number]):
            continue
        for state in disk.states(chance, *(10, 3) if quick else (200, FEW)):
            key = hash(frozenset(state.items())), len(rules.needed), ended
            if key not in seen:
                seen.add(key)
                faults = rules.faults(state, ended)
                lossy += bool(faults)
                for fault in faults:
                    differing = sorted(file for file in state | present
                                       if state.get(file) != present.get(file))
                    losses.setdefault(fault, f"after call {number} ({call.name} {path}), where "
                                      f"{', '.join(differing)} differ")
    assert disk.present() == versions[-1], "a change of the disk was not recorded"
    return len(seen), lossy, losses


def states(check, quick):
    rows = []
    for name in list(RUNS)[-1:] if quick else RUNS:
        disk, calls, versions = record(*RUNS[name])
        count, lossy, losses = crash(name, disk, calls, versions, quick)
        rows.append((name, len(calls), f"{count:,}", f"{lossy:,}"))
        check(not losses, f"{name}: {losses}")
    # A checker that finds nothing where nothing is flushed would find nothing anywhere.
    calls = [call for call in calls if not is_flush(call)]
    count, lossy, losses = crash(name, disk, calls, versions, quick)
    rows.append(("the same, its flushes left out", len(calls), f"{count:,}", f"{lossy:,}"))
    for kind in ("neither", "nowhere", "through"):
        check(any(kind in loss for loss in losses), f"no loss found: {kind}")
    return {"crash states": page.table(("with", "calls", "states", "of them with a loss"), *rows,
                                       numbers=True)}
