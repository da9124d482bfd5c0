# SPDX-License-Identifier: MIT
"""Directories, links, locks and names that are not as they should be."""
import codecs
import fcntl
import itertools
import os
import pathlib
import re
import resource
import shutil
import subprocess

from wizard import DONE, EDIT, ENTER, Home

NOBODY = 65534


def replace_by(make, name="history.csv"):
    def meanwhile(project):
        (project / name).unlink()
        make(project / name)
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


def limited(project):
    # The limit of the child itself; its pipes are not files.
    children = pathlib.Path(f"/proc/{os.getpid()}/task/{os.getpid()}/children").read_text()
    for child in children.split():
        resource.prlimit(int(child), resource.RLIMIT_FSIZE, (400, 400))


# What happens behind the wizard's back, and what Done says about it; nothing where it succeeds.
TARGETS = [
    ("directory made read-only", lambda p: p.chmod(0o555),
     "create exports.csv file : Permission denied"),
    ("directory without access", lambda p: p.chmod(0o600),
     "create exports.csv file : Permission denied"),
    ("table made read-only", lambda p: (p / "history.csv").chmod(0o444),
     "write history.csv : Permission denied"),
    ("table made immutable", immutable, "write history.csv : Operation not permitted"),
    ("table locked by another program", locked, None),
    ("size of files limited to 400 bytes", limited,
     "create exports.csv file : File too large|write exports.csv : File too large"),
    ("directory removed", shutil.rmtree, None),
    ("directory replaced by a file", lambda p: (shutil.rmtree(p), p.write_bytes(b"")),
     "create exports.csv file : (File exists|Not a directory)"),
    ("table replaced by a link to elsewhere", replace_by(to_elsewhere), None),
    ("table replaced by a dangling link", replace_by(lambda f: f.symlink_to("nowhere")),
     "write history.csv : The link points to a file that does not exist"),
    ("table replaced by a link to a directory", replace_by(lambda f: f.symlink_to(".")),
     "write history.csv : Is a directory"),
    ("table replaced by a directory", replace_by(lambda f: f.mkdir()),
     "write history.csv : Is a directory"),
    ("table replaced by a pipe", replace_by(os.mkfifo), "write history.csv : Not a plain file"),
]


def give_away(home):
    for entry in [home.path, *home.path.rglob("*")] if os.geteuid() == 0 else []:
        os.chown(entry, NOBODY, NOBODY)


def target(check, home, what, meanwhile, answer, account):
    """What Done said, or nothing where the machine does not allow the like."""
    give_away(home)
    try:
        said = home.drive_around(ENTER + EDIT, lambda: meanwhile(home.project), account=account)
    except (subprocess.CalledProcessError, FileNotFoundError):
        return None
    subprocess.run(["chattr", "-i", home.project / "history.csv"], capture_output=True)
    told = re.findall("^said (?!Write to)(.*)", said, re.M)
    if answer is None:
        check("ended" in said and not told, f"{what}: {said}")
    else:
        check(len(told) == 1 and re.fullmatch(f"Could not ({answer})", told[0]), f"{what}: {said}")
    if home.project.is_dir():
        home.project.chmod(0o755)
    if "removed" not in what and "replaced by a file" not in what:
        check(not home.lost(), f"{what}: lost {home.lost()}")
    if "elsewhere" in what:
        check((home.project / "history.csv").is_symlink()
              and (home.path / "elsewhere.csv").read_bytes().startswith(b"Index"), what)
    return told[0] if told else "everything written"


def targets(check):
    other = NOBODY if os.geteuid() == 0 else None
    rows = ["| behind the wizard's back | Done |", "|---|---|"]
    for what, meanwhile, answer in TARGETS:
        account = None if meanwhile is limited else other  # nobody may limit another account
        with Home() as home:
            told = target(check, home, what, meanwhile, answer, account)
        rows.append(f"| {what} | {told or 'not possible here'} |")
    with Home() as home:
        give_away(home)
        home.project.chmod(0o555)
        said = home.drive(ENTER, account=other)
        check("Project not read: backup of FIELD-names.csv: Permission denied." in said, said)
        check(home.tables() == home.former, "an entry that is refused writes")
    return rows


HOSTILE = ["../x", "../../x", "..", ".", "/", "a/b", "*", "?", "a\\nb", "a\\r\\nb", "a\\0b", "'",
           '"', ";touch x", "$(touch x)", "`touch x`", "-rf", "--", "|x", "&", "~", "%s%n",
           "\\xFF", "x" * 300, " ", "a,b", "#"]
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
    acts = ["setenv FEC_HOME {home}/fec"] + ["click ProjectDir"] * (field == "ProjectDir")
    acts += [f"type {key} {text}" for key, text in typed.items()
             if key != "ProjectDir" or field == key]
    acts += ["click HistoryCheck", "click AlarmWatchCheck", "click DeviceListCheck",
             "click EditCmd", "click cProject", "answer yes"]
    home.drive(acts + DONE, below="deep/er")
    after = home.entries()
    return {path for path in before | after if before.get(path, 0) != after.get(path, 0)}


def names(check):
    """Each name in each field; nothing but the project and one folder of the repository changes."""
    for field, name in itertools.product(FIELDS, HOSTILE):
        plain = codecs.decode(name, "unicode_escape")
        leaf = plain if field in ("ExportName", "ProjectDir") else "NEW"
        project = os.path.normpath("deep/er/" + leaf.lstrip("/"))
        local = plain[:6] if field == "LocalName" else "NEWEQM"
        with Home() as home:
            for path in changed_paths(home, field, name):
                in_project = ((path + "/").startswith(project + "/")
                              or project.startswith(path + "/"))
                repository = re.fullmatch(r"deep/er/fec/([^/]+)(/[^/]+)?", path, re.S)
                in_repository = repository and repository[1] == local
                check(in_project or in_repository, f"{field} {name!r} writes {path!r}")
    return [f"{len(FIELDS) * len(HOSTILE)} runs, {len(HOSTILE)} names in each of {len(FIELDS)} "
            "fields: no file outside the project directory and the server's folder of the "
            "repository came, went or changed."]
