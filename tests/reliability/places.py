# SPDX-License-Identifier: MIT
"""Directories, links, locks and names that are not as they should be, and full disks."""
import codecs
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

import wizard
from wizard import DONE, EDIT, ENTER, Home

NOBODY = 65534


def replace_by(make, name="history.csv"):
    def meanwhile(project):
        (project / name).unlink()
        make(project / name)
    return meanwhile


def to_elsewhere(file):
    (file.parents[1] / "elsewhere.csv").write_bytes(b"elsewhere")
    (file.parents[1] / "elsewhere.csv").chmod(0o666)
    file.symlink_to("../elsewhere.csv")


def immutable(project):
    subprocess.run(["chattr", "+i", project / "history.csv"], check=True, capture_output=True)


def locked(project):
    fcntl.flock(os.open(project / "history.csv", os.O_RDONLY), fcntl.LOCK_EX)


def limited(project):
    # The limit of the child itself; its pipes are not files.
    for child in pathlib.Path(f"/proc/{os.getpid()}/task/{os.getpid()}/children").read_text().split():
        resource.prlimit(int(child), resource.RLIMIT_FSIZE, (400, 400))


# What happens behind the wizard's back, and what Done says about it; nothing where it succeeds.
TARGETS = [
    ("directory made read-only", lambda p: p.chmod(0o555), "create exports.csv file : Permission denied"),
    ("directory without access", lambda p: p.chmod(0o600), "create exports.csv file : Permission denied"),
    ("table made read-only", lambda p: (p / "history.csv").chmod(0o444), "write history.csv : Permission denied"),
    ("table made immutable", immutable, "write history.csv : Operation not permitted"),
    ("table locked by another program", locked, None),
    ("size of files limited to 400 bytes", limited, "create exports.csv file : File too large|"
     "write exports.csv : File too large"),
    ("directory removed", shutil.rmtree, None),
    ("directory replaced by a file", lambda p: (shutil.rmtree(p), p.write_bytes(b"")),
     "create exports.csv file : (File exists|Not a directory)"),
    ("table replaced by a link to elsewhere", replace_by(to_elsewhere), None),
    ("table replaced by a dangling link", replace_by(lambda f: f.symlink_to("nowhere")),
     "write history.csv : The link points to a file that does not exist"),
    ("table replaced by a link to a directory", replace_by(lambda f: f.symlink_to(".")),
     "write history.csv : Is a directory"),
    ("table replaced by a directory", replace_by(lambda f: f.mkdir()), "write history.csv : Is a directory"),
    ("table replaced by a pipe", replace_by(os.mkfifo), "write history.csv : Not a plain file"),
]


def give_away(home):
    for entry in [home.path, *home.path.rglob("*")] if os.geteuid() == 0 else []:
        os.chown(entry, NOBODY, NOBODY)


def targets(check):
    rows = ["| behind the wizard's back | Done |", "|---|---|"]
    other = NOBODY if os.geteuid() == 0 else None
    for what, meanwhile, answer in TARGETS:
        account = None if meanwhile is limited else other  # nobody may limit another account
        with Home() as home:
            give_away(home)
            try:
                said = home.drive_around(ENTER + EDIT, lambda: meanwhile(home.project), account=account)
            except (subprocess.CalledProcessError, FileNotFoundError):
                rows.append(f"| {what} | not possible here |")
                continue
            subprocess.run(["chattr", "-i", home.project / "history.csv"], capture_output=True)
            told = re.findall("^said (?!Write to)(.*)", said, re.M)
            expected = answer is None and "ended" in said and not told
            check(expected or (answer and len(told) == 1 and re.fullmatch(f"Could not ({answer})", told[0])),
                  f"{what}: {said}")
            if home.project.is_dir():
                home.project.chmod(0o755)
            lost = home.lost()
            gone = "removed" in what or "replaced by a file" in what
            check(not lost or gone, f"{what}: lost {lost}")
            if "elsewhere" in what:
                check((home.project / "history.csv").is_symlink()
                      and (home.path / "elsewhere.csv").read_bytes().startswith(b"Index"), what)
            rows.append(f"| {what} | {told[0] if told else 'everything written'} |")
    with Home() as home:
        give_away(home)
        home.project.chmod(0o555)
        said, _ = home.drive(ENTER, account=other)
        check("Project not read: Permission denied" in said and home.tables() == home.former, said)
    return rows


HOSTILE = ["../x", "../../x", "..", ".", "/", "a/b", "*", "?", "a\\nb", "a\\r\\nb", "a\\0b", "'", '"', ";touch x",
           "$(touch x)", "`touch x`", "-rf", "--", "|x", "&", "~", "%s%n", "\\xFF", "x" * 300, " ", "a,b", "#"]


def names(check):
    """Each name in each field; nothing but the project and one folder of the repository changes."""
    fields = {"ExportName": "NEW", "LocalName": "NEWEQM", "PropertyName": "P", "ProjectDir": "{home}/NEW"}
    for field, name in itertools.product(fields, HOSTILE):
        with Home() as home:
            deep = home.path / "deep/er"  # room for ".." that is watched
            shutil.copytree(home.project, deep / "NEXT")
            (deep / "fec").mkdir()
            before = home.entries()
            typed = fields | {field: ("{home}/" if field == "ProjectDir" else "") + name}
            home.drive(["setenv FEC_HOME {home}/fec"] + ["click ProjectDir"] * (field == "ProjectDir")
                       + [f"type {key} {text}" for key, text in typed.items() if key != "ProjectDir" or field == key]
                       + ["click HistoryCheck", "click AlarmWatchCheck", "click DeviceListCheck", "click EditCmd",
                          "click cProject", "answer yes"] + DONE, below="deep/er")
            plain = codecs.decode(name, "unicode_escape")
            leaf = plain if field in ("ExportName", "ProjectDir") else "NEW"
            project = os.path.normpath("deep/er/" + leaf.lstrip("/"))
            local = plain[:6] if field == "LocalName" else "NEWEQM"
            after = home.entries()
            for path in {n for n in before | after if before.get(n, 0) != after.get(n, 0)}:
                in_project = (path + "/").startswith(project + "/") or project.startswith(path + "/")
                in_repository = re.fullmatch(r"deep/er/fec/([^/]+)(/[^/]+)?", path, re.S)
                check(in_project or (in_repository and in_repository[1] == local), f"{field} {name!r} writes {path!r}")
    return [f"{len(fields) * len(HOSTILE)} runs, {len(HOSTILE)} names in each of {len(fields)} fields: no file outside "
            "the project directory and the server's folder of the repository came, went or changed."]


def rows_of(size):
    head = (wizard.ROOT / "examples/MAGNET/exports.csv").read_bytes().split(b"\r\n")[0] + b"\r\n"
    row = b"MAGNET,MAGEQM,P%05d,1,double,0,NULL, 1,READ,1,Supply voltage of one power converter,0\r\n"
    count = (size - len(head)) // len(row % 0)
    return head + b"".join(row % i for i in range(count))


def fill(disk, free):
    """Leaves `free` KiB of the disk."""
    with open(disk / "fill", "wb", buffering=0) as file:
        room = os.statvfs(disk).f_bavail * os.statvfs(disk).f_bsize - free * 1024
        for _ in range(max(0, -(-room // 4096))):
            file.write(b"\0" * 4096)


def verdict(now, old, new):
    return "old whole" if now == old else "new whole" if new(now) else f"neither, {len(now)} bytes"


def ours(disk, size, free):
    home = Home.__new__(Home)
    home.path, home.project = disk, disk / "MAGNET"
    home.project.mkdir()
    table = home.project / "exports.csv"
    old = rows_of(size)
    table.write_bytes(old)
    edit = ["click vbProject", "select 0", "type PropertyDescription of the other one", "click EditCmd"]
    said = home.drive_around(ENTER[1:] + edit, lambda: fill(disk, free))
    new = b"of the other one"
    return verdict(table.read_bytes(), old, lambda now: new in now and len(now) > size - 200), "said Could not" in said


def gnumeric(disk, size, free):
    old, table, changed = rows_of(size), disk / "table.csv", disk.parent / "changed.csv"
    table.write_bytes(old)
    changed.write_bytes(old.replace(b"voltage", b"current", 1))
    whole = disk.parent / "whole.csv"
    subprocess.run(["ssconvert", changed, whole], capture_output=True)
    fill(disk, free)
    run = subprocess.run(["ssconvert", changed, table], capture_output=True, text=True)
    now = table.read_bytes() if table.exists() else b""
    return verdict(now, old, lambda n: n == whole.read_bytes()), run.returncode != 0 or "rror" in run.stderr


def keepassxc(disk, size, free):
    key, table, data = disk.parent / "key", disk / "t.kdbx", disk.parent / "data"
    key.write_bytes(b"k" * 64)
    data.write_bytes(os.urandom(max(1, size - 1400)))
    with_key = ["-q", "--no-password", "-k", key]

    def cli(command, *rest):
        return subprocess.run(["keepassxc-cli", command, *with_key, table, *rest], capture_output=True, text=True)
    subprocess.run(["keepassxc-cli", "db-create", "-q", "-t", "100", "-k", key, table], capture_output=True)
    cli("add", "e")
    cli("attachment-import", "e", "data", data)
    old = table.read_bytes()
    fill(disk, free)
    run = cli("mkdir", "new")
    now = table.read_bytes() if table.exists() else b""
    return verdict(now, old, lambda _: "new" in cli("ls").stdout), run.returncode != 0


def featherpad(disk, size, free):
    table = disk / "table.csv"
    old = rows_of(size).replace(b"\r", b"")  # it drops them
    table.write_bytes(old)
    server = subprocess.Popen(["Xvfb", "-displayfd", "1"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    environment = dict(os.environ, DISPLAY=":" + server.stdout.readline().strip(), HOME=str(disk.parent))
    editor = subprocess.Popen(["featherpad", table], env=environment, stderr=subprocess.DEVNULL)

    def xdo(*words):
        return subprocess.run(["xdotool", *words], env=environment, capture_output=True, text=True).stdout
    xdo("search", "--sync", "--onlyvisible", "--name", "table.csv")
    time.sleep(1)
    fill(disk, free)
    xdo("type", "Q")
    xdo("key", "ctrl+s")
    time.sleep(1)
    title = xdo("getwindowname", xdo("search", "--name", "table.csv").split()[-1])
    for program in (editor, server):
        program.kill()
        program.wait()
    return verdict(table.read_bytes(), old, lambda now: now == b"Q" + old), title.startswith("*")


def full_disk(check):
    """A memory disk of 64 KiB that only this process and its children see."""
    if ctypes.CDLL(None).unshare(0x20000) != 0:
        return ["Not possible here: no mount namespace of its own."]
    subprocess.run(["mount", "--make-rprivate", "/"], check=True)
    programs = {"the wizard": ours, "gnumeric (ssconvert)": gnumeric, "keepassxc-cli": keepassxc,
                "featherpad": featherpad}
    rows = ["| table | free | " + " | ".join(programs) + " |", "|---|---|" + "---|" * len(programs)]
    for size in (1400, 9000, 20000):
        for free in (0, 1, 4):
            cells = []
            for name, program in programs.items():
                with Home({}) as home:
                    disk = home.path / "disk"
                    disk.mkdir()
                    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "none", disk], check=True)
                    try:
                        outcome, told = program(disk, size, free)
                        cells.append(f"{outcome}, {'told' if told else 'not told'}")
                    except (FileNotFoundError, IndexError) as missing:
                        cells.append(f"not driven ({type(missing).__name__})")
                    subprocess.run(["umount", "-l", disk], check=True)
                if name == "the wizard":
                    check(cells[-1] in ("old whole, told", "new whole, not told"), f"{size} {free}: {cells}")
            rows.append(f"| {size} bytes | {free} KiB | " + " | ".join(cells) + " |")
    return rows
