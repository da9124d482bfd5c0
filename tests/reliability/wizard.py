# SPDX-License-Identifier: MIT
"""A project in a temporary home directory, and the wizard driven in it from outside."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
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

    def entries(self):
        return self.files() | {str(f.relative_to(self.path)): None for f in self.path.rglob("*") if f.is_dir()}

    def files(self):
        return {str(f.relative_to(self.path)): f.read_bytes() for f in self.path.rglob("*")
                if f.is_file()}

    def tables(self):
        return {n: b for n, b in self.files().items() if not STAMPED.search(n)}

    def hidden(self):
        return [n for n in self.files() if "/." in n]

    def lost(self):
        """Former tables whose bytes are nowhere any more, and what is left under hidden names."""
        kept = list(self.files().values())
        return [n for n, b in self.former.items() if b not in kept] + self.hidden()

    def start(self, window=False, preload=None, account=None, below=""):
        command = [build / "wizard_driver", self.path / below] + (["window"] if window else [])
        if account:
            command = ["setpriv", f"--reuid={account}", f"--regid={account}", "--clear-groups"] + command
        environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", XDG_RUNTIME_DIR="/tmp")
        if preload:
            environment |= {"LD_PRELOAD": str(build / "libsystem_call_faults.so"),
                            "FAULT_FOLDER": str(self.path), "ASAN_OPTIONS": "verify_asan_link_order=0"}
            environment |= {"FAULT_" + key: str(value) for key, value in preload.items()}
        return subprocess.Popen(command, env=environment, text=True, stdin=subprocess.PIPE, cwd="/",
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, errors="replace")

    def drive(self, acts, **how):
        """Everything that was said, and what the preloaded library counted."""
        program = self.start(**how)
        said, counted = program.communicate("\n".join(acts) + "\n", timeout=60)
        if program.returncode not in (0, -9):
            raise AssertionError(f"the wizard ended with {program.returncode}: {counted}")
        return said, counted

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
        return program.communicate("\n".join(DONE) + "\n", timeout=60)[0]
