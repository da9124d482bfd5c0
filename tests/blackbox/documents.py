#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Are the documents true? Their links lead somewhere, and their procedures can be walked.

documents.py links
documents.py walk PROGRAM KOVA_PROJECT

A numbered list of a page is a procedure. What it says in these words is done in the real window by
key and mouse, and checked; the rest is for the reader:

    Type `A`, `B` and `C` in *Field* [of *Frame*]    Choose `A` as *Field* [of *Frame*]
    Tick *Box*    Clear *Box*    Click `NAME` in the list    Press **Button**    `Key`
    Answer **OK**    *Field* becomes `A`    status line says `text`    the page *Page*
"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import desktop

DOCUMENTS = ["README.md", "CONTRIBUTING.md", "CHANGELOG.md", "SECURITY.md", "packaging/README.md",
             *(str(page.relative_to(desktop.ROOT)) for page in desktop.ROOT.glob("docs/*.md"))]
WALKS = ["docs/quick-start.md", "docs/tutorial.md"]
KEYS = {"Tab": desktop.TAB, "Escape": 0xFF1B}
NAMES = {"Output ArrayType": "Output ArrayType :", "Number Steps": "Number Steps :"}
TEXTS, FIELD = r"((?:`[^`]+`(?:, | and )?)+)", r"\*([^*]+)\*(?: of \*([^*]+)\*)?"
ACTS = {
    "type": rf"(?:[Tt]ype|and) {TEXTS} in {FIELD}", "choose": rf"[Cc]hoose {TEXTS} as {FIELD}",
    "tick": rf"[Tt]ick {FIELD}", "clear": rf"[Cc]lear {FIELD}",
    "select": rf"[Cc]lick {TEXTS} in the list", "press": r"[Pp]ress \*\*([^*]+)\*\*",
    "key": r"(?:[Pp]ress|with) `([^`]+)`", "answer": r"[Aa]nswer \*\*([^*]+)\*\*",
    "shows": rf"{FIELD} becomes `([^`]+)`", "says": rf"status line says {TEXTS}",
    "turn": r"the page \*([^*]+)\*"}


def broken_links():
    def anchors(page):
        headings = re.findall(r"^#+ (.+)$", page.read_text(), re.M)
        return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}

    for name in DOCUMENTS:
        page = desktop.ROOT / name
        text = re.sub(r"```.*?```", "", page.read_text(), flags=re.S)
        for link in re.findall(r"\]\(([^)\s]+)\)", text):
            place, _, anchor = link.partition("#")
            target = page.parent / place if place else page
            if place.startswith("http"):
                continue
            if not target.exists() or anchor and anchor not in anchors(target):
                yield f"{name}: {link}"


def procedures(page):
    """Each a list of (place, act, arguments)."""
    text = re.sub(r"\n(?![\n\d#])\s*", " ", (desktop.ROOT / page).read_text())
    for number, block in enumerate(re.split(r"\n(?!\d+\. )", text)):
        steps = re.findall(r"^(\d+)\. (.+)$", block, re.M)
        acts = []
        for step, sentence in steps:
            found = sorted((match.start(), act, match.groups()) for act, pattern in ACTS.items()
                           for match in re.finditer(pattern, sentence))
            acts += [(f"{page}, step {step}: {act}", act, arguments) for _, act, arguments in found]
        if acts:
            yield acts


class Reader(desktop.Program):
    """Does what a page says."""

    def frame_of(self, role, field, frame):
        if frame:
            return frame
        return next(above[-1].name for found, above in self.walk()
                    if desktop.role_of(found) == role and self.named(found) == field)

    def do(self, act, arguments):
        texts = [re.findall("`([^`]+)`", part or "") for part in arguments]
        name = NAMES.get(arguments[1 if texts[0] else 0], arguments[1 if texts[0] else 0]) \
            if act in ("type", "choose", "tick", "clear", "shows") else arguments[0]
        if act == "type":
            self.type(self.frame_of("text", name, arguments[2]), name, "\n".join(texts[0]))
        elif act == "choose":
            self.choose(self.frame_of("combo box", name, arguments[2]), name, texts[0][0])
        elif act == "tick":
            self.tick(name)
        elif act == "clear":
            if self.has(self.find("check box", name), "checked"):
                self.act("check box", name)
        elif act == "select":
            self.press(self.until(texts[0][0], lambda: next(
                (found for found, _ in self.walk() if found.getRoleName() == "list item"
                 and f"] {texts[0][0]} <" in found.name), None)))
        elif act == "press":
            self.act("push button", name)
            if name == "Review":
                self.until("Review in front", lambda: self.in_front().name == name)
        elif act == "key":
            self.key(KEYS[name])
        elif act == "answer":
            box = self.until("a message", lambda: next(
                (w for w in self.windows() if w.getRoleName() == "alert"), None))
            self.answer(box.name, name)
        elif act == "shows":
            self.shows(self.frame_of("text", name, None), name, arguments[2])
        elif act == "says":
            self.status(texts[0][0])
        elif act == "turn":
            self.act("page tab", name)


def walk(program, project_tool):
    """One directory and one run of the program for each page, from its first step to its last."""
    for page in WALKS:
        with tempfile.TemporaryDirectory(prefix="kova-") as home:
            shutil.copytree(desktop.ROOT / "examples/MAGNET", f"{home}/MAGNET")
            with Reader(program, HOMEDRIVE=home) as reader:
                done = False
                for place, act, arguments in (step for acts in procedures(page) for step in acts):
                    print(place, arguments, flush=True)
                    reader.do(act, arguments)
                    done = act == "press" and arguments[0] == "Done"
                if done:
                    assert reader.process.wait(desktop.PATIENCE) == 0
            for project in pathlib.Path(home).iterdir():
                subprocess.run([project_tool, "check", project], check=True)


if __name__ == "__main__":
    if sys.argv[1] == "links":
        sys.exit("\n".join(broken_links()) or 0)
    desktop.enter("1600x1200")
    walk(*sys.argv[2:])
