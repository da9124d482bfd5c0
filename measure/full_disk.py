# SPDX-License-Identifier: MIT
"""A table on a disk that fills up, saved by the wizard and by other programs."""
import contextlib
import ctypes
import os
import subprocess
import time

from wizard import ENTER, ROOT, Home


def rows_of(size):
    head = (ROOT / "examples/MAGNET/exports.csv").read_bytes().split(b"\r\n")[0] + b"\r\n"
    row = (b"MAGNET,MAGEQM,P%05d,1,double,0,NULL, 1,READ,1,"
           b"Supply voltage of one power converter,0\r\n")
    count = (size - len(head)) // len(row % 0)
    return head + b"".join(row % i for i in range(count))


def fill(disk, free):
    """Leaves `free` KiB of the disk."""
    with open(disk / "fill", "wb", buffering=0) as file:
        room = os.statvfs(disk).f_bavail * os.statvfs(disk).f_bsize - free * 1024
        for _ in range(max(0, -(-room // 4096))):
            file.write(b"\0" * 4096)


def verdict(now, old, new):
    if now == old:
        return "old whole"
    return "new whole" if new(now) else f"neither, {len(now)} bytes"


def ours(disk, size, free):
    home = Home.__new__(Home)
    home.path, home.project = disk, disk / "MAGNET"
    home.project.mkdir()
    file = home.project / "exports.csv"
    old = rows_of(size)
    file.write_bytes(old)
    edit = ["click vbProject", "select 0", "type PropertyDescription of the other one",
            "click EditCmd"]
    said = home.drive_around(ENTER[1:] + edit, lambda: fill(disk, free))

    def new(now):
        return b"of the other one" in now and len(now) > size - 200
    return verdict(file.read_bytes(), old, new), "said Could not" in said


def gnumeric(disk, size, free):
    old, file, changed = rows_of(size), disk / "table.csv", disk.parent / "changed.csv"
    file.write_bytes(old)
    changed.write_bytes(old.replace(b"voltage", b"current", 1))
    whole = disk.parent / "whole.csv"
    subprocess.run(["ssconvert", changed, whole], capture_output=True)
    fill(disk, free)
    run = subprocess.run(["ssconvert", changed, file], capture_output=True, text=True)
    now = file.read_bytes() if file.exists() else b""
    told = run.returncode != 0 or "rror" in run.stderr
    return verdict(now, old, lambda n: n == whole.read_bytes()), told


def keepassxc(disk, size, free):
    key, file, data = disk.parent / "key", disk / "t.kdbx", disk.parent / "data"
    key.write_bytes(b"k" * 64)
    data.write_bytes(os.urandom(max(1, size - 1400)))

    def cli(command, *rest):
        words = ["keepassxc-cli", command, "-q", "--no-password", "-k", key, file, *rest]
        return subprocess.run(words, capture_output=True, text=True)
    subprocess.run(["keepassxc-cli", "db-create", "-q", "-t", "100", "-k", key, file],
                   capture_output=True)
    cli("add", "e")
    cli("attachment-import", "e", "data", data)
    old = file.read_bytes()
    fill(disk, free)
    run = cli("mkdir", "new")
    now = file.read_bytes() if file.exists() else b""
    return verdict(now, old, lambda _: "new" in cli("ls").stdout), run.returncode != 0


def featherpad(disk, size, free):
    file = disk / "table.csv"
    old = rows_of(size).replace(b"\r", b"")  # it drops them
    file.write_bytes(old)
    with contextlib.ExitStack() as started:
        def start(*words, **options):
            program = started.enter_context(
                subprocess.Popen(words, stderr=subprocess.DEVNULL, **options))
            started.callback(program.kill)
            return program

        server = start("Xvfb", "-displayfd", "1", stdout=subprocess.PIPE, text=True)
        environment = dict(os.environ, DISPLAY=":" + server.stdout.readline().strip(),
                           HOME=str(disk.parent))
        start("featherpad", file, env=environment)

        def xdo(*words):
            return subprocess.run(["xdotool", *words], env=environment, capture_output=True,
                                  text=True).stdout
        xdo("search", "--sync", "--onlyvisible", "--name", "table.csv")
        time.sleep(1)  # it tells nobody when it is ready, nor when it has saved
        fill(disk, free)
        xdo("type", "Q")
        xdo("key", "ctrl+s")
        time.sleep(1)
        title = xdo("getwindowname", xdo("search", "--name", "table.csv").split()[-1])
    told = title.startswith("*")
    return verdict(file.read_bytes(), old, lambda now: now == b"Q" + old), told


PROGRAMS = {"the wizard": ours, "gnumeric (ssconvert)": gnumeric, "keepassxc-cli": keepassxc,
            "featherpad": featherpad}


def cell(program, size, free):
    with Home({}) as home:
        disk = home.path / "disk"
        disk.mkdir()
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "none", disk], check=True)
        try:
            outcome, told = program(disk, size, free)
            return f"{outcome}, {'told' if told else 'not told'}"
        except (FileNotFoundError, IndexError) as missing:
            return f"not driven ({type(missing).__name__})"
        finally:
            subprocess.run(["umount", "-l", disk], check=True)


def table(check):
    """On a memory disk of 64 KiB that only this process and its children see."""
    if ctypes.CDLL(None).unshare(0x20000) != 0:
        return ["Not possible here: no mount namespace of its own."]
    subprocess.run(["mount", "--make-rprivate", "/"], check=True)
    rows = ["| table | free | " + " | ".join(PROGRAMS) + " |",
            "|---|---|" + "---|" * len(PROGRAMS)]
    for size in (1400, 9000, 20000):
        for free in (0, 1, 4):
            cells = [cell(program, size, free) for program in PROGRAMS.values()]
            check(cells[0] in ("old whole, told", "new whole, not told"), f"{size} {free}: {cells}")
            rows.append(f"| {size} bytes | {free} KiB | " + " | ".join(cells) + " |")
    return rows
