#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Takes the pictures of the documentation from the running program.

pictures.py PROGRAM    needs ImageMagick, xdotool, and the right to make /home/engineer for a while
"""
import pathlib
import shutil
import subprocess
import sys

import desktop

HOME = pathlib.Path("/home/engineer")
IMAGES = desktop.ROOT / "docs/images"
SERVER, PROPERTY, OUTPUT = "Device Server Information", "Property Information", "Data Output"
ALARM, DEVICES = "Alarm Watch Panel", "Device Panel"
TITLE, GUIDE, LEAVE = "KOVA Device Server Setup Wizard", "Device Server Parameters", "Server Setup Wizard"
ADD, REPOSITORY = "Add New Property with these characteristics ?", "Write to FEC_HOME repository?"
MARGIN = 5
# A plain desktop: the pictures show the windows' titles, and no fashion of icons.
DESKTOP = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5"}
SETTINGS = {
    "kdeglobals": "\n".join(
        ["[General]", *(f"{font}=DejaVu Sans,9,-1,5,50,0,0,0,0,0" for font in ("font", "menuFont")),
         "[KDE]", "ShowIconsOnPushButtons=false", "widgetStyle=Fusion"] +
        [f"[Colors:{part}]\nBackgroundNormal={colour}" for part, colour in {
            "Window": "243,244,245", "Button": "250,250,250", "View": "255,255,255",
            "Selection": "48,120,190"}.items()]),
    "openbox/rc.xml": """<openbox_config xmlns="http://openbox.org/3.4/rc"><theme><name>plain</name>
        <titleLayout>LC</titleLayout><font place="ActiveWindow"><name>DejaVu Sans</name><size>9</size></font>
        </theme></openbox_config>""",
    "themes/plain/openbox-3/themerc": "\n".join(f"{key}: {value}" for key, value in {
        "border.width": 1, "padding.width": 8, "padding.height": 5, "window.handle.width": 0,
        "window.client.padding.width": 0, "window.label.text.justify": "center", "border.color": "#9a9fa5",
        "window.active.border.color": "#9a9fa5", "window.active.title.bg": "flat solid",
        "window.active.title.bg.color": "#d9dde2", "window.active.title.separator.color": "#c3c8ce",
        "window.active.label.bg": "parentrelative", "window.active.label.text.color": "#2b3036",
        "window.active.button.*.bg": "parentrelative", "window.active.button.*.image.color": "#2b3036"}.items())}
PROMPTS = ("Please Enter the Export Name under which you would like your device server to be known: ",
           "Please Enter the Local name for your device server process (or accept the suggestion): ",
           "Please Enter the number of device modules your device server will serve : ")
PUMPS = [
    ("picture", "start", TITLE),
    ("act", "push button", "Done"), ("picture", "no-properties", LEAVE), ("answer", LEAVE, "Cancel"),
    ("key", *desktop.SECOND_IN_MENU), ("picture", "property-guidance", TITLE, "alert"),
    ("answer", TITLE, "OK"),
    ("act", "menu item", "Device Server Guidance"),
    ("type", GUIDE, PROMPTS[0], "PUMPS"), ("picture", "guide-step-1", GUIDE), ("act", "push button", "Next >"),
    ("shows", GUIDE, PROMPTS[1], "PUMEQM"), ("picture", "guide-step-2", GUIDE), ("act", "push button", "Next >"),
    ("type", GUIDE, PROMPTS[2], "3"), ("picture", "guide-step-3", GUIDE), ("act", "push button", "Done", GUIDE),
    ("type", DEVICES, "Device names", "PUMP.NORTH\nPUMP.EAST\nPUMP.WEST"),
    ("crop", "device-panel-server", DEVICES),
    ("type", PROPERTY, "Property Name", "PRESSURE"), ("type", PROPERTY, "Description", "Pressure at the inlet"),
    ("choose", OUTPUT, "Data Format", "Single"), ("type", OUTPUT, "Max Data Size", "3"),
    ("choose", PROPERTY, "Output ArrayType :", "CHANNEL"),
    ("type", PROPERTY, "Max Value", "1000"), ("type", PROPERTY, "Units", "mbar"),
    ("tick", "Keep History"), ("tick", "Alarm Watch"),
    ("type", ALARM, "Alarm System ID", "12"), ("type", ALARM, "Value too high", "900"),
    ("type", ALARM, "warning", "700"),
    ("picture", "form-filled", TITLE),
    ("act", "push button", "Add"), ("picture", "add-confirmation", ADD), ("answer", ADD, "OK"),
    ("status", "1 property, 1 history row, 1 alarm watch row, 3 device names not yet written"),
    ("type", PROPERTY, "Property Name", "STATE"), ("crop", "panels-disabled", "History Panel", ALARM),
    ("type", SERVER, "Local Name", "PUMPEQ"), ("keys", "M"),
    ("picture", "truncation-warning", TITLE, "alert"), ("answer", TITLE, "OK"),
    ("act", "push button", "Done", ""), ("picture", "repository-question", REPOSITORY)]
MAGNET = [
    ("type", SERVER, "Export Name", "MAGNET"), ("status", "Project read: 8 properties"),
    ("act", "list item", "[MAGNET] FIELD <[-1.5:1.5 T]Field at the probes>"),
    ("shows", PROPERTY, "Property Name", "FIELD"), ("crop", "device-panel-property", DEVICES),
    ("act", "list item", "[MAGNET] CURRENT <[0:250 A]Current of each supply>"),
    ("shows", PROPERTY, "Property Name", "CURRENT"), ("picture", "example-loaded", TITLE)]


class Photographer(desktop.Program):
    """Taking a picture is one more act."""

    def take(self, name, *where):
        """As soon as two pictures in a row are the same: nothing moves any more."""
        last, shot = None, b""
        while shot != last:
            last, shot = shot, subprocess.run(["import", *where, "png:-"], check=True, capture_output=True).stdout
        subprocess.run(["convert", "png:-", "+repage", "-strip", "+dither", "-colors", "255", "-define",
                        "png:compression-level=9", f"png8:{IMAGES}/{name}.png"], input=shot, check=True)

    def picture(self, name, title, role=None):
        """Of a window, with its frame."""
        self.until(f"{title} in front", lambda: any(
            w.name == title and role in (None, w.getRoleName()) and self.has(w, "active") for w in self.windows()))
        active = subprocess.run(["xdotool", "getactivewindow"], check=True, capture_output=True, text=True).stdout
        self.take(name, "-frame", "-window", active.strip())

    def crop(self, name, *frames):
        """Of frames side by side."""
        places = [self.find("panel", f).queryComponent().getExtents(self.atspi.DESKTOP_COORDS) for f in frames]
        left, top = min(p.x for p in places) - MARGIN, min(p.y for p in places) - MARGIN
        right, bottom = max(p.x + p.width for p in places) + MARGIN, max(p.y + p.height for p in places) + MARGIN
        self.take(name, "-window", "root", "-crop", f"{right - left}x{bottom - top}+{left}+{top}")

    def keys(self, text):
        """For an edit that brings up a message: the call of any other kind would not return before its end."""
        self.key(desktop.END)
        self.atspi.Registry.generateKeyboardEvent(0, text, self.atspi.KEY_STRING)


def main(path):
    desktop.enter("1600x1200", SETTINGS)
    HOME.mkdir()
    try:
        shutil.copytree(desktop.ROOT / "examples/MAGNET", HOME / "MAGNET")
        for acts in (PUMPS, MAGNET):
            with Photographer(path, HOMEDRIVE=str(HOME), FEC_HOME=str(HOME / "fec"), **DESKTOP) as program:
                program.play(acts)
    finally:
        shutil.rmtree(HOME)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
