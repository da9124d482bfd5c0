# SPDX-License-Identifier: MIT
"""Disks, directories, links, locks and names that are not as they should be."""
import ctypes
import fcntl
import itertools
import os
import pathlib
import re
import resource
import shutil
import subprocess
import time

import page
from wizard import DONE, EDIT, ENTER, NOBODY, ROOT, Home


def replaced(make):
    def meanwhile(project):
        (project / "history.csv").unlink()
        make(project / "history.csv")
    return meanwhile


def to_elsewhere(file):
    elsewhere = file.parents[1] / "elsewhere.csv"
    elsewhere.write_bytes(b"elsewhere")
    elsewhere.chmod(0o666)
    file.symlink_to("../elsewhere.csv")


def immutable(project):
    subprocess.run(["chattr", "+i", project / "history.csv"], check=True, capture_output=True)


def locked(project):
    fcntl.flock(os.open(project / "history.csv", os.O_RDONLY), fcntl.LOCK_EX)


def limited(_):
    # The limit of the child itself; its pipes are not files.
    children = pathlib.Path(f"/proc/{os.getpid()}/task/{os.getpid()}/children").read_text()
    for child in children.split():
        resource.prlimit(int(child), resource.RLIMIT_FSIZE, (400, 400))


# What happens without the wizard's knowledge; the page has what Done says about it.
TARGETS = {
    "directory made read-only": lambda p: p.chmod(0o555),
    "directory without access": lambda p: p.chmod(0o600),
    "table made read-only": lambda p: (p / "history.csv").chmod(0o444),
    "table made immutable": immutable,
    "table locked by another program": locked,
    "size of files limited to 400 bytes": limited,
    "directory removed": shutil.rmtree,
    "directory replaced by a file": lambda p: (shutil.rmtree(p), p.write_bytes(b"")),
    "table replaced by a link to elsewhere": replaced(to_elsewhere),
    "table replaced by a dangling link": replaced(lambda f: f.symlink_to("nowhere")),
    "table replaced by a link to a directory": replaced(lambda f: f.symlink_to(".")),
    "table replaced by a directory": replaced(lambda f: f.mkdir()),
    "table replaced by a pipe": replaced(os.mkfifo)}


def target(check, home, what, meanwhile):
    """What Done said, or what stands for it where the machine does not allow the like."""
    home.give_away()
    # Nobody may limit another account.
    account = NOBODY if os.geteuid() == 0 and meanwhile is not limited else None
    try:
        said = home.drive(ENTER + EDIT, lambda: meanwhile(home.project), account=account)
    except (subprocess.CalledProcessError, FileNotFoundError):
        return "not possible here"
    subprocess.run(["chattr", "-i", home.project / "history.csv"], capture_output=True)
    told = re.findall("^said (?!Write to)(.*)", said, re.M)
    check(told or "ended" in said, f"{what}: {said}")
    if home.project.is_dir():
        home.project.chmod(0o755)
    if "removed" not in what and "replaced by a file" not in what:
        check(not home.lost(), f"{what}: lost {home.lost()}")
    if "elsewhere" in what:
        check((home.project / "history.csv").is_symlink()
              and (home.path / "elsewhere.csv").read_bytes().startswith(b"Index"), what)
    return ", ".join(told) or "everything written"


def targets(check, results):
    wanted = dict(page.rows(results, "places"))
    rows = []
    for what, meanwhile in TARGETS.items():
        with Home() as home:
            rows.append((what, target(check, home, what, meanwhile)))
        check(rows[-1][1] in (wanted[what], "not possible here"), f"{rows[-1]}: {wanted[what]}")
    with Home() as home:
        home.give_away()
        home.project.chmod(0o555)
        said = home.drive(ENTER, account=NOBODY if os.geteuid() == 0 else None)
        check("Project not read: backup of FIELD-names.csv: Permission denied." in said, said)
        check(home.tables() == home.former, "an entry that is refused writes")
    return {"places": page.table(("without the wizard's knowledge", "Done"), *rows)}


HOSTILE = ["../x", "../../x", "..", ".", "/", "a/b", "*", "?", "a\nb", "a\r\nb", "a\0b", "'",
           '"', ";touch x", "$(touch x)", "`touch x`", "-rf", "--", "|x", "&", "~", "%s%n",
           "\xff", "x" * 300, " ", "a,b", "#"]
FIELDS = {"ExportName": "NEW", "LocalName": "NEWEQM", "PropertyName": "P",
          "ProjectDir": "{home}/NEW"}


def changed_paths(home, field, name):
    """What a run with `name` in a field adds, changes or removes, in a directory with room for
    ".." that is watched."""
    deep = home.path / "deep/er"
    shutil.copytree(home.project, deep / "NEXT")
    (deep / "fec").mkdir()
    before = home.entries()
    typed = FIELDS | {field: ("{home}/" if field == "ProjectDir" else "") + name}
    actions = ENTER[:1] + ["click ProjectDir"] * (field == "ProjectDir")
    actions += [f"type {key} {text}" for key, text in typed.items() if key in (
        "ExportName", "LocalName", "PropertyName", field)]
    actions += [f"click {control}" for control in (
        "HistoryCheck", "AlarmWatchCheck", "DeviceListCheck", "EditCmd", "cProject")]
    home.drive(actions + ["answer yes"] + DONE, below="deep/er")
    after = home.entries()
    return {path for path in before | after if before.get(path, 0) != after.get(path, 0)}


def names(check):
    """Each name in each field; nothing but the project and one folder of the repository changes."""
    for field, name in itertools.product(FIELDS, HOSTILE):
        leaf = name if field in ("ExportName", "ProjectDir") else "NEW"
        project = os.path.normpath("deep/er/" + leaf.lstrip("/"))
        local = name[:6] if field == "LocalName" else "NEWEQM"
        with Home() as home:
            for path in changed_paths(home, field, name):
                in_project = ((path + "/").startswith(project + "/")
                              or project.startswith(path + "/"))
                repository = re.fullmatch(r"deep/er/fec/([^/]+)(/[^/]+)?", path, re.S)
                in_repository = repository and repository[1] == local
                check(in_project or in_repository, f"{field} {name!r} writes {path!r}")
    return {"names": [len(FIELDS) * len(HOSTILE), len(HOSTILE), len(FIELDS)]}


def rows_of(size):
    head = (ROOT / "examples/MAGNET/exports.csv").read_bytes().split(b"\r\n")[0] + b"\r\n"
    row = (b"MAGNET,MAGEQM,P%05d,1,double,0,NULL, 1,READ,1,"
           b"Supply voltage of one power converter,0\r\n")
    return head + b"".join(row % i for i in range((size - len(head)) // len(row % 0)))


def run(*words, **options):
    return subprocess.run(words, capture_output=True, text=True, **options)


def fill(disk, free):
    """Leaves `free` KiB of the disk."""
    with open(disk / "fill", "wb", buffering=0) as file:
        room = os.statvfs(disk).f_bavail * os.statvfs(disk).f_bsize - free * 1024
        for _ in range(max(0, -(-room // 4096))):
            file.write(b"\0" * 4096)


# Each program saves a changed table on a disk that fills up meanwhile. It returns the file, its
# bytes before, whether it is the new one and whether the program has said that it is not.
def ours(home, disk, size, free):
    home.path, home.project, file = disk, disk / "MAGNET", disk / "MAGNET/exports.csv"
    home.write({"MAGNET/exports.csv": rows_of(size)})
    said = home.drive(ENTER[1:] + ["click vbProject", "select 0", "type PropertyDescription of the "
                                   "other one", "click EditCmd"], lambda: fill(disk, free))
    now = file.read_bytes()
    return (file, rows_of(size), b"of the other one" in now and len(now) > size - 200,
            "said Could not" in said)


def gnumeric(home, disk, size, free):
    file = disk / "table.csv"
    source, complete = home.path / "source.csv", home.path / "complete.csv"
    file.write_bytes(rows_of(size))
    source.write_bytes(rows_of(size).replace(b"voltage", b"current", 1))
    run("ssconvert", source, complete)
    fill(disk, free)
    end = run("ssconvert", source, file)
    return (file, rows_of(size), file.exists() and file.read_bytes() == complete.read_bytes(),
            end.returncode != 0 or "rror" in end.stderr)


def keepassxc(home, disk, size, free):
    key, file, data = home.path / "key", disk / "t.kdbx", home.path / "data"
    key.write_bytes(b"k" * 64)
    data.write_bytes(os.urandom(max(1, size - 1400)))

    def cli(command, *rest):
        return run("keepassxc-cli", command, "-q", "--no-password", "-k", key, file, *rest)
    run("keepassxc-cli", "db-create", "-q", "-t", "100", "-k", key, file)
    cli("add", "e")
    cli("attachment-import", "e", "data", data)
    old = file.read_bytes()
    fill(disk, free)
    end = cli("mkdir", "new")
    return file, old, "new" in cli("ls").stdout, end.returncode != 0


def featherpad(home, disk, size, free):
    file, old = disk / "table.csv", rows_of(size).replace(b"\r", b"")  # it drops them
    file.write_bytes(old)
    # It tells nobody when it is ready, nor when it has saved.
    steps = """featherpad "$0" & xdotool search --sync --onlyvisible --name table.csv && sleep 1
        touch ready; until [ -e full ]; do sleep 0.1; done; xdotool type Q; xdotool key ctrl+s
        sleep 1; xdotool getwindowname $(xdotool search --name table.csv | tail -1); kill $!"""
    with subprocess.Popen(["xvfb-run", "-a", "sh", "-c", steps, file], cwd=home.path, text=True,
                          env=dict(os.environ, HOME=home.name), stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL) as session:
        while not (home.path / "ready").exists():
            time.sleep(0.1)
        fill(disk, free)
        (home.path / "full").touch()
        title = session.communicate()[0].splitlines()[-1]
    return file, old, file.read_bytes() == b"Q" + old, title.startswith("*")


PROGRAMS = {"the wizard": (ours, "sh"), "gnumeric (ssconvert)": (gnumeric, "ssconvert"),
            "keepassxc-cli": (keepassxc, "keepassxc-cli"), "featherpad": (featherpad, "featherpad")}


def cell(name, size, free):
    program, needed = PROGRAMS[name]
    if not shutil.which(needed):
        return "not installed"
    with Home({}) as home:
        disk = home.path / "disk"
        disk.mkdir()
        run("mount", "-t", "tmpfs", "-o", "size=64k", "none", disk, check=True)
        try:
            file, old, new, told = program(home, disk, size, free)
            now = file.read_bytes() if file.exists() else b""
            outcome = ("old complete" if now == old else "new complete" if new
                       else f"neither, {len(now)} bytes")
            return f"{outcome}, {'reported' if told else 'not reported'}"
        finally:
            run("umount", "-l", disk, check=True)


def full_disk(check):
    """On a memory disk of 64 KiB that only this process and its children see."""
    if ctypes.CDLL(None).unshare(0x20000) != 0:
        return {"full disk": ["Not possible here: no mount namespace of its own."]}
    run("mount", "--make-rprivate", "/", check=True)
    rows = []
    for size, free in itertools.product((1400, 9000, 20000), (0, 1, 4)):
        cells = [cell(program, size, free) for program in PROGRAMS]
        check(cells[0] in ("old complete, reported", "new complete, not reported"),
              f"{size} {free}: {cells}")
        rows.append((f"{size} bytes", f"{free} KiB", *cells))
    return {"full disk": page.table(("table", "free", *PROGRAMS), *rows)}
