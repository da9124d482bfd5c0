# SPDX-License-Identifier: MIT
"""Building the programs that measure, and writing what came of them into a page of docs/."""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.append(str(ROOT / "tests/blackbox"))  # the private desktop


def build(*purposes):
    """Builds the preset "measure" with the packages for it; returns its directory."""
    subprocess.run(["bash", "-ec", 'source scripts/packages.sh; need_packages build test measure '
                    '"$@"; build_preset measure', "bash", *purposes], cwd=ROOT, check=True)
    return ROOT / "build/measure"


def write(page, sections):
    """Puts lines between the marks of their section, or numbers in place of those in the sentences
    there. The others stay."""
    def renewed(found):
        new = sections.get(found[2], [])
        if new and isinstance(new[0], str):
            return found[1] + "\n".join(new) + "\n"
        numbers = iter(new)
        return found[1] + re.sub(r"\d+([,.]\d+)*", lambda old: str(next(numbers, old[0])), found[3])
    page.write_text(re.sub("(?s)(<!-- begin ([a-z ]+) -->\n)(.*?)(?=<!-- end -->)", renewed,
                           page.read_text()))


def rows(page, section):
    """The rows of the table in a section, as lists of cells."""
    lines = page.read_text().split(f"<!-- begin {section} -->\n")[1].split("<!-- end -->")[0]
    return [line[2:-2].split(" | ") for line in lines.splitlines()[2:]]


def table(head, *rows, numbers=False):
    """Lines of a table. Its columns after the first are aligned as numbers or as texts."""
    line = "|---" + ("|---:" if numbers else "|---") * (len(head) - 1) + "|"
    first, *others = ["|" + "".join(f" {cell} |" if cell != "" else " |" for cell in row)
                      for row in (head, *rows)]
    return [first, line, *others]


def take(file, *where):
    """A picture of the screen, as soon as two in a row are the same: nothing moves any more."""
    last, shot = None, b""
    while shot != last:
        last, shot = shot, subprocess.run(["import", *where, "png:-"], check=True,
                                          capture_output=True).stdout
    subprocess.run(["convert", "png:-", "+repage", "-strip", "+dither", "-colors", "255", "-define",
                    "png:compression-level=9", f"png8:{file}"], input=shot, check=True)
