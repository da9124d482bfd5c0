#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""project_tool.py SOURCES WORD ...: kova-project, which the words start, as scripts use it."""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

import jsonschema

SOURCES, PROGRAM = pathlib.Path(sys.argv[1]), sys.argv[2:]
SEPARATOR = "\\" if PROGRAM[-1].endswith(".exe") else "/"
EXAMPLE = SOURCES / "examples" / "MAGNET"
SCHEMA = json.loads((SOURCES / "docs" / "kova-project.schema.json").read_text())


def run(*words, out=subprocess.PIPE):
    ended = subprocess.run(
        [*PROGRAM, *words], stdout=out, stderr=subprocess.PIPE, text=True, check=False,
        errors="surrogateescape",
        env={"PATH": os.environ["PATH"], "TZ": "UTC", "LC_ALL": "C.UTF-8",
             "KOVA_MUTANT": os.environ.get("KOVA_MUTANT", "")})
    return ended.returncode, ended.stdout, ended.stderr


class ProjectTool(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.project = pathlib.Path(folder.name) / "MAG NET"
        shutil.copytree(EXAMPLE, self.project)

    def change(self, file, old, new):
        path = self.project / file
        path.write_bytes(path.read_bytes().replace(old, new))

    def test_check(self):
        self.assertEqual(run("check", EXAMPLE, self.project), (0, "", ""))
        self.change("exports.csv", b"double", b"dauble")
        place = f"{self.project}{SEPARATOR}exports.csv:8:23"
        line = f'{place}: warning: "dauble" is not a format [unknown-format]\n'
        self.assertEqual(run("check", self.project), (1, line, ""))
        for status, options in [(0, "--fail-on=error"), (1, "--fail-on=note"),
                                (0, "--ignore=empty-line,unknown-format"),
                                (1, "--select=unknown-format"), (0, "--select=empty-line")]:
            self.assertEqual(run("check", options, self.project)[0], status, options)
        status, out, complaint = run("check", self.project, "/nowhere")
        self.assertEqual((status, out), (2, line))
        self.assertIn("/nowhere: There is no such directory", complaint)
        with open("/dev/full", "w", encoding="utf-8") as full:
            self.assertEqual(run("check", self.project, out=full)[0], 2)

    def test_check_for_programs(self):
        self.change("exports.csv", b"Field at", b"\xb5 Field, at")
        (self.project / "exports-1700000000.csv").write_bytes(b"")
        found = json.loads(run("check", "--format", "json", self.project)[1])["directories"][0]
        places = [(f["line"], f["column"], f["rule"]) for f in found["findings"]]
        self.assertIn((8, 90, "too-many-fields"), places)
        sarif = json.loads(run("check", "--format", "sarif", self.project, "/nowhere")[1])
        [report] = sarif["runs"]
        rules = report["tool"]["driver"]["rules"]
        for result in report["results"]:
            self.assertEqual(rules[result["ruleIndex"]]["id"], result["ruleId"])
        location = report["results"][0]["locations"][0]["physicalLocation"]
        self.assertTrue(location["artifactLocation"]["uri"].endswith("MAG%20NET/exports.csv"))
        self.assertFalse(report["invocations"][0]["executionSuccessful"])

    def test_show(self):
        shown = json.loads(run("show", "--format", "json", EXAMPLE)[1])
        example = json.loads((SOURCES / "tests" / "blackbox" / "example.json").read_text())
        self.assertEqual(shown, {"directory": str(EXAMPLE)} | example)
        self.change("exports.csv", b"Field at", b"\xb5 Field at")
        self.change("history.csv", b" 2,MAGNET", b" 99999,MAGNET")
        status, out, _ = run("show", "--format", "json", self.project)
        shown = json.loads(out)
        jsonschema.validate(shown, SCHEMA, jsonschema.Draft202012Validator)
        self.assertEqual(status, 0)
        self.assertEqual(shown["properties"][6]["description"], "\u00b5 Field at the probes")
        self.assertEqual([stop["line"] for stop in shown["stops"]], [3])
        self.assertIn("PROPERTY=FIELD", run("show", self.project)[1])
        self.assertEqual(run("show", "/nowhere")[:2], (2, ""))
        del shown["server"]["devices"]
        with self.assertRaises(jsonschema.ValidationError):
            jsonschema.validate(shown, SCHEMA, jsonschema.Draft202012Validator)

    def test_diff(self):
        self.assertEqual(run("diff", EXAMPLE, self.project), (0, "", ""))
        self.change("exports.csv", b"CURRENT,4", b"CURRENT,8")
        difference = "~ exports.csv\n  ~ MAGNET CURRENT: PROPERTY_SIZE 4 -> 8\n"
        self.assertEqual(run("diff", EXAMPLE, self.project), (1, difference, ""))
        self.assertEqual(run("diff", self.project)[0], 2)
        shutil.copy(EXAMPLE / "exports.csv", self.project / "exports-1700000000.csv")
        self.assertEqual(run("diff", self.project), (1, difference, ""))
        self.assertEqual(run("diff", self.project, "1700000000"), (1, difference, ""))
        self.assertEqual(run("diff", self.project, "1700000009")[0], 2)
        for wrong in ["5994967296", "17000000009"]:  # more than a timestamp has room for
            self.assertIn(f"{wrong}: There is no such", run("diff", self.project, wrong)[2])

    def test_restore(self):
        self.assertEqual(run("backups", self.project), (0, "", ""))
        (self.project / "exports.csv").rename(self.project / "exports-1700000000.csv")
        (self.project / "exports.csv").write_bytes(b"PROPERTY\r\nX\r\n")
        listed = run("backups", self.project)[1]
        self.assertIn("1700000000  2023-11-14 22:13:20  ", listed)
        size = (EXAMPLE / "exports.csv").stat().st_size
        self.assertIn(f"  exports.csv, {size} bytes\n", listed)
        status, out, _ = run("restore", "--dry-run", self.project, "1700000000")
        self.assertIn("+ MAGNET FIELD", out)
        self.assertEqual((self.project / "exports.csv").read_bytes(), b"PROPERTY\r\nX\r\n")
        status, out, _ = run("restore", self.project, "1700000000", "exports.csv")
        self.assertEqual((status, out.splitlines()[0]), (0, "restored exports.csv"))
        kept = out.splitlines()[1].removeprefix("kept as ")
        self.assertEqual((self.project / kept).read_bytes(), b"PROPERTY\r\nX\r\n")
        self.assertEqual(run("diff", EXAMPLE, self.project), (0, "", ""))
        self.assertEqual(run("restore", self.project, "1700000000", "x.csv")[0], 2)

    @unittest.skipIf(SEPARATOR == "\\", "no such names of files")
    def test_no_control_reaches_the_terminal(self):
        bad = "::error::\x1b[2J\a\x7f\x81\n::error file=x::"
        self.change("exports.csv", b"double", bad.encode("latin-1"))
        folder = self.project.rename(self.project.parent / bad)
        for name in ["exports", bad, "\u202e\udcff"]:
            (folder / f"{name}-1700000000.csv").write_bytes(b"PROPERTY\r\nX\r\n")
            (folder / f"{name}.csv").touch()
        restore = ["restore", folder, "1700000000"]
        outputs = [run(*words) for words in [
            ["check", folder], ["show", folder], ["diff", EXAMPLE, folder], ["backups", folder],
            ["diff", folder], [*restore, "--dry-run"], restore, [*restore, bad], [bad], ["--" + bad],
            ["check", bad], ["show", bad, bad], ["check", "--format", bad, folder]]]
        for status, out, complaint in outputs:
            self.assertNotEqual(out + complaint, "", status)
            for line in (out + complaint).split("\n"):
                self.assertNotRegex(line, "[\x00-\x1f\x7f-\x9f\u202e\udcff]|^ *::")
        for status, out, _ in outputs[:3]:
            self.assertIn(r"::error::\033[2J\a\177\302\201\n::error file=x::", out, status)
        self.assertIn("\n  \\342\\200\\256\\377.csv, 13 bytes\n", outputs[3][1])

    def test_words_about_itself(self):
        for command in ["check", "diff", "show", "backups", "restore", "rules"]:
            self.assertEqual(run(command, "--help")[0], 0)
            with open("/dev/full", "w", encoding="utf-8") as full:
                self.assertEqual(run(command, "--help", out=full)[0], 2)
            self.assertRegex(run(command, "--version")[1], r"^kova-project \d+\.\d+\.\d+\n$")
        for command in ["check", "diff", "show", "backups", "restore"]:
            timestamp = ["1"] if command == "restore" else []
            complaint = "kova-project: nowhere: There is no such directory\n"
            self.assertEqual(run(command, "nowhere", *timestamp), (2, "", complaint))
        for wrong in [[], ["chek"], ["check", "--select", "chek"], ["check", "--format", "xml", EXAMPLE],
                      ["show", "--format", "sarif", EXAMPLE]]:
            self.assertEqual(run(*wrong)[0], 2, wrong)
        self.assertEqual(run("rules")[1], (SOURCES / "docs" / "checking.md").read_text())


unittest.main(argv=sys.argv[:1])
