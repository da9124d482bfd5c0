# SPDX-License-Identifier: MIT
"""Building the programs that measure, and writing what came of them into a page of docs/."""
import pathlib
import re
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[1]


def build(*purposes):
    """Builds the preset "measure" with the packages for it; returns its directory."""
    subprocess.run(["bash", "-ec", 'source scripts/packages.sh; need_packages build test measure '
                    '"$@"; build_preset measure', "bash", *purposes], cwd=ROOT, check=True)
    return ROOT / "build/measure"


def write(page, sections):
    """Puts each section between its marks; the others stay."""
    page.write_text(re.sub(
        "(?s)(<!-- begin ([a-z ]+) -->\n)(.*?)(?=<!-- end -->)",
        lambda found: found[1] + sections.get(found[2], found[3]), page.read_text()))


def take(file, *where):
    """A picture of the screen, as soon as two in a row are the same: nothing moves any more."""
    last, shot = None, b""
    while shot != last:
        last, shot = shot, subprocess.run(["import", *where, "png:-"], check=True,
                                          capture_output=True).stdout
    subprocess.run(["convert", "png:-", "+repage", "-strip", "+dither", "-colors", "255", "-define",
                    "png:compression-level=9", f"png8:{file}"], input=shot, check=True)
