# SPDX-License-Identifier: MIT
"""A project in a temporary home directory, and the wizard driven in it from outside."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
ENTER = ["setenv FEC_HOME {home}/fec", "type ExportName MAGNET"]
EDIT = ["time 1700000100", "select 6", "type PropertyDescription Field at the probes",
        "click EditCmd", "answer yes"]
DONE = ["click Command1"]
NOBODY = 65534
build = None  # set by the script that runs


class Home(tempfile.TemporaryDirectory):
    """A copy of the example project, or a directory with the given tables."""

    def __init__(self, tables=None):
        super().__init__(prefix="kova-", ignore_cleanup_errors=True)
        self.path = pathlib.Path(self.name)
        self.project = self.path / "MAGNET"
        (self.path / "fec").mkdir()
        if tables is None:
            shutil.copytree(ROOT / "examples/MAGNET", self.project)
        else:
            self.project.mkdir()
            self.write({f"MAGNET/{name}": content for name, content in tables.items()})
        self.former = self.tables()

    def __enter__(self):
        return self

    def write(self, files):
        for name, content in files.items():
            (self.path / name).parent.mkdir(exist_ok=True)
            (self.path / name).write_bytes(content)

    def entries(self):
        return {str(f.relative_to(self.path)): f.read_bytes() if f.is_file() else None
                for f in self.path.rglob("*")}

    def files(self):
        return {name: content for name, content in self.entries().items() if content is not None}

    def tables(self):
        return {name: content for name, content in self.files().items()
                if not re.search(r"-1\d{9}(\.|$)", name)}

    def lost(self):
        """Former tables whose bytes are nowhere any more, and what is left under hidden names."""
        files = self.files()
        kept = list(files.values())
        return [name for name, content in self.former.items() if content not in kept] + [
            name for name in files if "/." in name]

    def give_away(self):
        for entry in [self.path, *self.path.rglob("*")] if os.geteuid() == 0 else []:
            os.chown(entry, NOBODY, NOBODY)

    def start(self, account=None, below=""):
        self.folder = self.path / below
        command = [build / "measure/measure_driver", self.folder]
        if account:
            command = ["setpriv", f"--reuid={account}", f"--regid={account}",
                       "--clear-groups"] + command
        return subprocess.Popen(command, text=True, stdin=subprocess.PIPE, cwd="/",
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, errors="replace")

    def send(self, program, actions, question=""):
        """Actions as lines of "VERB WORD TEXT"; in a text {home} is the home directory. Returns the
        answer to a question that follows them."""
        for action in actions:
            verb, word, text = (action.split(" ", 2) + [""])[:3]
            text = text.replace("{home}", str(self.folder)).encode("latin-1")
            program.stdin.write(f"{verb} {word} {text.hex()}\n")
        program.stdin.write(question and f"{question}\nready\n")
        program.stdin.flush()
        answer = []
        while question and answer[-1:] != ["ready\n"]:
            answer.append(program.stdout.readline())
            if not answer[-1]:
                raise AssertionError(f"the wizard did not answer: {program.communicate()}")
        return answer[:-1]

    def finish(self, program, actions):
        """Everything that was said until the end."""
        self.send(program, actions)
        said, wrong = program.communicate(timeout=600)
        if program.returncode != 0:
            raise AssertionError(f"the wizard ended with {program.returncode}: {wrong}")
        return said

    def drive(self, actions, meanwhile=None, **how):
        """Actions, and if something is done to the disk meanwhile, Done after it."""
        program = self.start(**how)
        if not meanwhile:
            return self.finish(program, actions)
        self.send(program, actions, "calls")
        meanwhile()
        return self.finish(program, DONE)
