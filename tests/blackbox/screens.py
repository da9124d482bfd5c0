#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Shows the program on many screens and finds texts that are cut and controls out of reach.

screens.py PROBE          a few combinations
screens.py PROBE FOLDER   all of them, with a sheet of pictures for each window
"""
import itertools
import os
import subprocess
import sys
import tempfile

SCALES, POINTS = ("1", "1.25", "1.5", "1.75", "2"), ("8", "9", "10", "11", "12", "14", "16", "18")
PALETTES = ("light", "dark")
FEW = [("1", "12", "light"), ("1.25", "18", "dark"), ("1.75", "11", "light"), ("2", "8", "dark")]
WINDOWS = ("screen", "whole", "guide", "question", "warning")


def show(probe, scale, points, palette, folder):
    """One combination; what the probe finds wrong goes to the output."""
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", QT_SCALE_FACTOR=scale, HOMEDRIVE="/tmp",
                       QT_LOGGING_RULES="*.warning=false")
    command = [probe, points, palette, f"{folder}/{scale}-{points}-{palette}"]
    return subprocess.run(command, env=environment, timeout=60).returncode == 0


def sheet(folder, window, scale, palette):
    """The pictures of a window on one screen, smallest font first."""
    pictures = [f"{folder}/{scale}-{points}-{palette}-{window}.png" for points in POINTS]
    subprocess.run(["montage", "-label", "%t", *pictures, "-geometry", "900x>+8+8", "-tile", "4x",
                    f"{folder}/sheet-{window}-{scale}-{palette}.png"], check=True)


def main(probe, folder=None):
    if folder:
        os.makedirs(folder, exist_ok=True)
    combinations = list(itertools.product(SCALES, POINTS, PALETTES)) if folder else FEW
    with tempfile.TemporaryDirectory(prefix="kova-") as temporary:
        failed = [c for c in combinations if not show(probe, *c, folder or temporary)]
    for screen in itertools.product(WINDOWS, SCALES, PALETTES) if folder else ():
        sheet(folder, *screen)
    print(f"{len(combinations)} combinations shown, {len(failed)} with faults: {failed}")
    return bool(failed)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
