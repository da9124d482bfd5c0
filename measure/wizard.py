# SPDX-License-Identifier: MIT
"""A project in a temporary home directory, and the wizard driven in it from outside."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
STAMPED = re.compile(r"-1\d{9}(\.|$)")
ENTER = ["setenv FEC_HOME {home}/fec", "type ExportName MAGNET"]
EDIT = ["time 1700000100", "select 6", "type PropertyDescription Field at the probes",
        "click EditCmd", "answer yes"]
DONE = ["click Command1"]
build = None  # set by the script that runs


class Home:
    """A copy of the example project, or a directory with the given tables."""

    def __init__(self, tables=None):
        self.path = pathlib.Path(tempfile.mkdtemp(prefix="kova-"))
        self.project = self.path / "MAGNET"
        (self.path / "fec").mkdir()
        if tables is None:
            shutil.copytree(ROOT / "examples/MAGNET", self.project)
        else:
            self.project.mkdir()
            for name, content in tables.items():
                (self.project / name).write_bytes(content)
        self.former = self.tables()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.path, ignore_errors=True)

    def files(self):
        return {str(f.relative_to(self.path)): f.read_bytes()
                for f in self.path.rglob("*") if f.is_file()}

    def entries(self):
        folders = {str(f.relative_to(self.path)): None
                   for f in self.path.rglob("*") if f.is_dir()}
        return self.files() | folders

    def tables(self):
        return {name: content for name, content in self.files().items()
                if not STAMPED.search(name)}

    def lost(self):
        """Former tables whose bytes are nowhere any more, and what is left under hidden names."""
        files = self.files()
        kept = list(files.values())
        return [name for name, content in self.former.items() if content not in kept] + [
            name for name in files if "/." in name]

    def start(self, account=None, below=""):
        command = [build / "measure/measure_driver", self.path / below]
        if account:
            command = ["setpriv", f"--reuid={account}", f"--regid={account}",
                       "--clear-groups"] + command
        return subprocess.Popen(command, text=True, stdin=subprocess.PIPE, cwd="/",
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, errors="replace")

    def drive(self, acts, **how):
        """Everything that was said."""
        program = self.start(**how)
        said, wrong = program.communicate("\n".join(acts) + "\n")
        if program.returncode != 0:
            raise AssertionError(f"the wizard ended with {program.returncode}: {wrong}")
        return said

    def ready(self, acts, **how):
        """A wizard that has carried out the acts and waits."""
        program = self.start(**how)
        program.stdin.write("\n".join(acts) + "\nready\n")
        program.stdin.flush()
        for line in program.stdout:
            if line == "ready\n":
                return program
        raise AssertionError(f"the wizard did not get ready: {program.communicate()}")

    def drive_around(self, acts, meanwhile, **how):
        """Acts, then something done to the disk, then Done."""
        program = self.ready(acts, **how)
        meanwhile()
        return program.communicate("\n".join(DONE) + "\n")[0]
