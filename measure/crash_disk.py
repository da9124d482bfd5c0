# SPDX-License-Identifier: MIT
"""A disk as a crash may leave it. What was flushed is there. Of the bytes and names that came
later each may have reached the disk or not, in any order, since nothing but a flush orders them."""
import collections
import os
import pathlib

Call = collections.namedtuple("Call", "name path given")  # given: bytes of whatever is meant

GONE, WHOLE, HALF, ZEROS = range(4)  # forms that any file with unflushed bytes has
SILENT = {"close", "fchmod", "fchown", "fcntl", "flock", "futimens", "opendir", "read", "stat"}
NAMELESS = os.O_TMPFILE & ~os.O_DIRECTORY  # the flag of a file that gets its name once it is whole
FEW = 8  # unflushed names of a folder of which every subset is built: 256


def applied(content, writes):
    """The content after writes of (place, bytes)."""
    result = bytearray(content)
    for place, data in writes:
        result.extend(bytes(max(0, place - len(result))))
        result[place:place + len(data)] = data
    return bytes(result)


def as_zeros(write):
    place, data = write
    return place, bytes(len(data))


class File:
    """Flushed bytes, and the writes since."""

    def __init__(self, content=b""):
        self.flushed, self.pending = content, []
        self.size = len(content)
        self.known_forms = None

    def content(self):
        return self.forms()[WHOLE]

    def append(self, data):
        self.pending.append((self.size, data))
        self.size += len(data)
        self.known_forms = None

    def flush(self):
        self.flushed, self.pending = self.content(), []
        self.known_forms = None

    def forms(self):
        """What a crash may leave of it: the four forms above, then other cuts and holes."""
        if self.known_forms is None:
            self.known_forms = self.make_forms() if self.pending else [self.flushed] * 4
        return self.known_forms

    def make_forms(self):
        *first, (place, data) = self.pending
        half = (place, data[:len(data) // 2])
        forms = [self.flushed, applied(self.flushed, self.pending),
                 applied(self.flushed, first + [half]),
                 applied(self.flushed, map(as_zeros, self.pending))]
        others = {}
        for i, (place, data) in enumerate(self.pending):
            head, tail = self.pending[:i], self.pending[i + 1:]
            for size in (0, 1, len(data) - 1):
                others[applied(self.flushed, head + [(place, data[:size])])] = True
            others[applied(self.flushed, head + [as_zeros((place, data))] + tail)] = True
        return forms + [form for form in others if form not in forms]


class Folder:
    """Flushed names, and the changes since. A change is a few (name, node); node None removes."""

    def __init__(self):
        self.names, self.flushed, self.pending = {}, {}, []

    def change(self, *change):
        self.pending.append(change)
        apply_change(self.names, change)

    def flush(self):
        self.flushed, self.pending = dict(self.names), []

    def kept(self, mask):
        """The names where of the changes since those have arrived whose bits are in the mask."""
        names = dict(self.flushed)
        for i, change in enumerate(self.pending):
            if mask >> i & 1:
                apply_change(names, change)
        return names

    def every(self):
        return (1 << len(self.pending)) - 1

    def masks(self, few=FEW):
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


def apply_change(names, change):
    for name, node in change:
        if node is None:
            names.pop(name, None)
        else:
            names[name] = node


class Disk:
    """The folder `home`, changed and flushed by one recorded call after the other."""

    def __init__(self, home):
        self.home = str(home)
        self.root = self.load(pathlib.Path(home))
        self.nameless = None  # the one that is being written

    def load(self, path):
        if not path.is_dir():
            return File(path.read_bytes())
        folder = Folder()
        folder.names = {entry.name: self.load(entry) for entry in path.iterdir()}
        folder.flush()
        return folder

    def find(self, path):
        """The folder that has the path's last name, and the name; of `home` itself the name ''."""
        folder, steps = self.root, os.path.relpath(path, self.home).split("/")
        for step in steps[:-1]:
            folder = folder.names[step]
        return folder, "" if steps == ["."] else steps[-1]

    def node(self, path):
        if path.endswith(" (deleted)"):
            return self.nameless
        folder, name = self.find(path)
        return folder.names[name] if name else folder

    def take(self, call):
        """Carries out a call; an unknown one fails."""
        if not is_silent(call):
            getattr(self, "take_" + call.name)(call.path, call.given)

    def changed(self, call):
        """The file or folder that the call is about, in the end."""
        path = call.given.decode() if call.name in ("rename", "linkat") else call.path
        return os.path.relpath(path, self.home)

    def take_open(self, path, flags):
        if int(flags) & NAMELESS:
            self.nameless = File()
            return
        folder, name = self.find(path)
        if name not in folder.names:
            folder.change((name, File()))

    # Files are written from their beginning to their end.
    def take_write(self, path, data):
        self.node(path).append(data)

    take_copy_file_range = take_write

    def take_fsync(self, path, _):
        self.node(path).flush()

    def take_syncfs(self, path, _):
        # The repository may well be on another disk than the projects.
        folder = os.path.relpath(path, self.home).split("/")[0]
        for node in self.nodes(self.root if folder == "." else self.root.names[folder]):
            node.flush()

    def take_rename(self, path, target):
        (folder, old), (into, new) = self.find(path), self.find(target.decode())
        assert folder is into, "a rename between folders is two changes, which nothing here makes"
        folder.change((old, None), (new, folder.names[old]))

    def take_linkat(self, _, name):
        folder, new = self.find(name.decode())
        folder.change((new, self.nameless))

    def take_unlink(self, path, _):
        folder, name = self.find(path)
        folder.change((name, None))

    def take_mkdir(self, path, _):
        folder, name = self.find(path)
        folder.change((name, Folder()))

    def take_saved(self, path, data):
        """Another program has saved a file well: its bytes and its name are flushed."""
        folder, name = self.find(path)
        folder.pending = [[entry for entry in change if entry[0] != name]
                          for change in folder.pending]
        folder.names[name] = folder.flushed[name] = File(data)

    def nodes(self, top=None):
        """Every file and folder that the present, the flushed or a pending name may lead to."""
        found, ahead = {}, [top or self.root]
        while ahead:
            node = ahead.pop()
            if id(node) in found:
                continue
            found[id(node)] = node
            if isinstance(node, Folder):
                named = [*node.names.items(), *node.flushed.items()]
                named += [entry for change in node.pending for entry in change]
                ahead += [below for _, below in named if below is not None]
        return list(found.values())

    def present(self):
        """What the programs see."""
        return self.files({}, lambda _: WHOLE)

    def files(self, masks, forms):
        """Bytes by path where each folder has its mask and each file its form."""
        result, ahead = {}, [("", self.root)]
        while ahead:
            path, folder = ahead.pop()
            mask = masks.get(folder)
            for name, node in (folder.names if mask is None else folder.kept(mask)).items():
                if isinstance(node, Folder):
                    ahead.append((path + name + "/", node))
                else:
                    result[path + name] = node.forms()[forms(node)]
        return result

    def states(self, chance, rounds, few=FEW):
        """Every state that a crash may leave now, as bytes by path; some come more than once."""
        pending = [node for node in self.nodes() if node.pending]
        folders = [node for node in pending if isinstance(node, Folder)]
        files = [node for node in pending if isinstance(node, File)]
        every = {folder: folder.every() for folder in folders}
        bases = [every, dict.fromkeys(folders, 0)]
        for base in bases:
            for form in (GONE, WHOLE, HALF, ZEROS):
                yield self.files(base, lambda _, form=form: form)
                for folder in folders:
                    for mask in folder.masks(few):
                        yield self.files(base | {folder: mask}, lambda _, form=form: form)
            for file in files:
                for form in range(len(file.forms())):
                    for rest in (GONE, WHOLE):
                        yield self.files(base, lambda node, file=file, form=form, rest=rest:
                                         form if node is file else rest)
        for _ in range(rounds if pending else 0):
            masks = {folder: chance.getrandbits(len(folder.pending)) for folder in folders}
            forms = {file: chance.randrange(len(file.forms())) for file in files}
            yield self.files(masks, lambda node, forms=forms: forms.get(node, WHOLE))
