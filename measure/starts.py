# SPDX-License-Identifier: MIT
"""How long the wizard, its baselines and other desktop programs take to show their windows."""
import os
import pathlib
import re
import shutil
import subprocess
import time

QUIET = {**os.environ, "QT_LOGGING_RULES": "*.warning=false"}
OFFSCREEN = {**QUIET, "QT_QPA_PLATFORM": "offscreen"}
NEIGHBOURS = ("featherpad", "gnumeric", "sqlitebrowser", "keepassxc", "designer", "mousepad")
PATIENCE = 30  # seconds


def output(*words, **options):
    return subprocess.run([str(w) for w in words], check=True, text=True, stdout=subprocess.PIPE,
                          **options).stdout


class Screen:
    """An X server of its own. `environment` leads programs to it."""

    def __enter__(self):
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", "1", "-screen", "0", "1600x1200x24", "-noreset", "-nolisten", "tcp"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        display = ":" + self.server.stdout.readline().strip()
        self.environment = {**QUIET, "QT_QPA_PLATFORM": "xcb", "DISPLAY": display}
        return self

    def settle(self):
        """Waits until the server has cleared away what the last program has left."""
        output("xprop", "-root", "WM_NAME", env=self.environment)
        time.sleep(0.1)

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()


def first_frame(program, preload, home, environment, **further):
    """Seconds from the start to the first frame, and what the process told then."""
    environment = {**environment, "LD_PRELOAD": str(preload), "HOME": str(home),
                   **{name: str(value) for name, value in further.items()}}
    start = time.monotonic()
    told = output(*program, env=environment).splitlines()
    moment, seconds, nanoseconds, width, height = told[0].split()
    values = {line.split(":")[0]: line.split()[1] for line in told if line.endswith(" kB")}
    libraries = sorted({line.split()[-1] for line in told if ".so" in line.split("/")[-1]})
    return {"start": float(moment) - start, "work": int(seconds) + int(nanoseconds) / 1e9,
            "size": (width, height), "memory": float(values["Pss"]),
            "libraries": [name for name in libraries if name != str(preload)]}


def measure_starts(bin_, work, screen, runs, samples):
    """The wizard beside its baselines in turns. Returns the libraries that it maps."""
    wizard = (bin_ / "src/desktop/kova-setup-wizard",)
    preload = bin_ / "measure/libmeasure_first_frame.so"
    home = work / "empty"
    home.mkdir()
    places = (("X", screen.environment), ("offscreen", OFFSCREEN))
    for place, environment in places:  # also warms the page cache
        frame = first_frame(wizard, preload, home, environment, KOVA_FORM=work / place)
    bare = (bin_ / "measure/measure_bare_window", *frame["size"])
    for turn in range(runs):
        for place, environment in places:
            same = (bin_ / "measure/measure_same_form", work / place)
            programs = [("", wizard), ("/same", same), ("/bare", bare)]
            for baseline, program in programs[::-1] if turn % 2 else programs:
                screen.settle()
                told = first_frame(program, preload, home, environment)
                for figure in ("start", "work", "memory"):
                    samples.setdefault(f"{figure}/{place}{baseline}", []).append(told[figure])
    measure_cold(wizard, frame["libraries"], preload, home, screen, runs, samples)
    return frame["libraries"]


def measure_cold(wizard, libraries, preload, home, screen, runs, samples):
    """Copies of the program and its libraries that nobody else maps can be taken out of memory."""
    folder = home.parent / "cold"
    (folder / "platforms").mkdir(parents=True)
    for name in (*wizard, *libraries):
        below = "platforms" if "/platforms/" in str(name) else ""
        shutil.copy(name, folder / below)
    plugin = next(pathlib.Path(name).parent for name in libraries if "/platforms/" in name)
    for name in plugin.glob("*xcb*"):
        shutil.copy(name, folder / "platforms")
    output("sync", "-f", folder)
    for _ in range(max(3, runs // 3)):
        for file in folder.rglob("*"):
            if file.is_file():
                with open(file, "rb") as bytes_:
                    os.posix_fadvise(bytes_.fileno(), 0, 0, os.POSIX_FADV_DONTNEED)
        screen.settle()
        told = first_frame((folder / wizard[0].name,), preload, home, screen.environment,
                           LD_LIBRARY_PATH=folder, QT_QPA_PLATFORM_PLUGIN_PATH=folder / "platforms")
        samples.setdefault("start/cold", []).append(told["start"])


def windows(environment):
    """Numbers of the windows on the screen that are as large as those of programs."""
    tree = output("xwininfo", "-root", "-tree", env=environment)
    found = re.findall(r"^ +(0x\w+) .* (\d+)x(\d+)\+", tree, re.MULTILINE)
    return [number for number, width, height in found if int(width) > 200 and int(height) > 150]


def is_visible(number, environment):
    told = subprocess.run(["xwininfo", "-id", number], env=environment, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    return "Map State: IsViewable" in told


def proportional(process):
    """Memory in KiB of a process and those that it has started."""
    below = output("ps", "-o", "pid=", "--ppid", process.pid, "--pid", process.pid).split()
    rollups = [pathlib.Path(f"/proc/{pid}/smaps_rollup") for pid in below]
    return sum(int(re.search(r"Pss: +(\d+)", file.read_text())[1])
               for file in rollups if file.exists())


def show(program, home, screen):
    """Seconds until a window of the program is visible, and its memory half a second later."""
    environment = {**screen.environment, "HOME": str(home), "XDG_RUNTIME_DIR": str(home)}
    before = set(windows(environment))
    start = time.monotonic()
    process = subprocess.Popen(program, env=environment, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    try:
        while time.monotonic() < start + PATIENCE:
            if any(is_visible(one, environment) for one in windows(environment) if one not in before):
                taken = time.monotonic() - start
                time.sleep(0.5)
                return taken, proportional(process)
            time.sleep(0.005)
    finally:
        process.kill()
        process.wait()
    raise TimeoutError(f"{program} has shown no window")


def measure_neighbours(bin_, work, screen, runs, samples):
    """Returns those that are installed."""
    found = [name for name in NEIGHBOURS if shutil.which(name)]
    programs = [("wizard", bin_ / "src/desktop/kova-setup-wizard"), *((n, n) for n in found)]
    for turn in range(runs + 1 if found else 0):
        for name, program in programs:
            taken, memory = show([str(program)], work / "empty", screen)
            if turn:  # the first one makes its settings and warms the page cache
                samples.setdefault("shown/" + name, []).append(taken)
                samples.setdefault("held/" + name, []).append(memory)
    return found
