# SPDX-License-Identifier: MIT
"""Tables of other programs, opened and finished without an edit: what comes back is known byte by
byte, and each difference has a rule."""
import re

import page
from wizard import ROOT, Home


def head(example):
    return (ROOT / "examples/MAGNET" / example).read_text().split("\n")[0]


HEADS = {"exports.csv": head("exports.csv"), "history.csv": head("history.csv"),
         "almwatch.csv": head("almwatch.csv"), "devices.csv": head("FIELD-names.csv")}
ROWS = {  # each row as another program wrote it, and as it comes back
    "exports.csv": [
        ("M,MEQM,SET,1,double,1,double,7,READ|WRITE, 4,[0:2 T]Set point ,0",
         "M,MEQM,SET,1,double,1,double, 1,READ|WRITE,2,[0:2 T]Set point,0"),
        ("M,MEQM,FIELD,4,float.CHANNEL,0,NULL,8,READ,2,Field,0",
         "M,MEQM,FIELD,4,float.CHANNEL,0,NULL, 2,READ,2,Field,0")],
    "history.csv": [
        ("4,M,MEQM,SET,#0,1,FLOAT,18000.5,+500,3E1,0.5,100,six",
         " 4,M,MEQM,SET,#0, 1,FLOAT, 18000, 500, 30,0.5, 100, 0"),
        (" 5,M,MEQM,FIELD,#0, 4,FLOAT, 18000, 500, 30,10%, 100, 6",) * 2],
    "almwatch.csv": [
        ("MEQM,#0,SET,1,FLOAT,10,7,1.23456789,-0.5,1e20,0.25,0,00",
         "MEQM,#0,SET, 1,FLOAT, 10, 7, 1.234568,-.5, 1E+20, .25,0,00"),
        ("MEQM,#0,FIELD, 4,FLOAT, 10, 7, 40.5,-3, 0, 0,0,0",) * 2],
    "devices.csv": [("0,Quad", " 0,Quad"), ("02,Sext", " 2,Sext")]}
SPACES = "spaces around a field are dropped"
RULES = {"PROPERTY_ID": "numbered again at each writing", "DESCRIPTION": SPACES,
         "NUM_MODULES": "one number for the server, that of the last row"}
NUMBER = ("a number is what the field starts with, rounded to the column's type, in one form")
FIELD_ROW = ROWS["exports.csv"][1][1] + "\r\n"
MARK = "\xef\xbb\xbf"


def table(name, side):
    return "".join(line + "\r\n" for line in [HEADS[name]] + [row[side] for row in ROWS[name]])


def in_lines(change):
    return lambda text: "\r\n".join(change(text.split("\r\n")[:-1])) + "\r\n"


def swap(*pairs):
    def swapped(text):
        for old, new in pairs:
            text = text.replace(old, new)
        return text
    return swapped


def same(text):
    return text


def permuted(lines):
    return [",".join((line + ",foreign").split(",")[::-1]) for line in lines]


def many_rows(lines):
    return lines[:1] + lines[1:2] * 1000 + lines[2:]


def many_rows_numbered(text):
    if text.startswith("DEVICE"):
        return text
    numbers = iter(range(1, 1002))
    return re.sub(r" \d+(?=,READ)", lambda _: f" {next(numbers)}", in_lines(many_rows)(text))


def without_first_column(text):
    if text.startswith("LocalName"):
        return MARK + table("almwatch.csv", 0)
    form = " 1,,MEQM,FIELD,#0, 4,float, 18000, 1000, 10,10%, 600, 1\r\n"
    return swap(("\r\nM,", "\r\n,"), ("\r\n 4,", "\r\n 0,"), ("\r\n 5,", "\r\n 0,"),
                ("Quad", "Sext"), ("2,Sext", "2,Device 2"),
                ("10%, 100, 6\r\n", "10%, 100, 6\r\n" + form))(text)


QUOTES = swap(("Field", '"a, b"'), ("Quad", '"Q,1"'), ("#0", '"#0,x"'))
HIGH_BYTES = swap(("Field", "\xb0\x81\xff"), ("Quad", "\xc4\x80"), ("#0", "#\xe9"))
# What a variant does to the tables and to what comes back (None: nothing is written). The page has
# the rule of each.
VARIANTS = {
    "CR LF": (same, same),
    "lone CR": (swap(("\r\n", "\r")), same),
    "no last line ending": (lambda text: text[:-2], same),
    "LF alone": (swap(("\r\n", "\n")), None),
    "comments": (in_lines(lambda lines: [";", "% x"] + lines[:2] + ["#,y"] + lines[2:]), same),
    "permuted, with an unknown column": (in_lines(permuted), same),
    "tags in lower case": (lambda text: re.sub("^.*", lambda line: line[0].lower(), text), same),
    "spaces, tabs, NULs": (swap((",", "\t, \0")), same),
    "quotes": (QUOTES, QUOTES),
    "bytes above 127": (HIGH_BYTES, HIGH_BYTES),
    "an empty line": (
        in_lines(lambda lines: lines[:2] + [""] + lines[2:]),
        swap((FIELD_ROW, ""), ("0\r\n 5,", "0\r\n 0,,,,, 0,, 0, 0, 0,, 0, 0\r\n 5,"),
             ("WRITE,2", "WRITE,4"), ("Quad", "Device 0"),
             (" 2,Sext\r\n", " 2,Sext\r\n 3,Device 3\r\n 4,Device 4\r\n"))),
    "1001 rows": (in_lines(many_rows), many_rows_numbered),
    "byte order mark": (lambda text: MARK + text, without_first_column)}


def differences():
    for name, rows in ROWS.items():
        for old, new in rows:
            for column, was, now in zip(HEADS[name].split(","), old.split(","), new.split(",")):
                if was != now:
                    yield name, column, f"`{was}`", f"`{now}`", RULES.get(column, NUMBER)


def tables(check, results):
    ruled = [row[0] for row in page.rows(results, "rules of corpora")]
    check(ruled == list(VARIANTS), f"the page has rules of {ruled}")
    before, after = [{name: table(name, side) for name in HEADS} for side in (0, 1)]
    after["devices.csv"] = after["devices.csv"].replace(" 2,", " 1,Device 1\r\n 2,")
    for variant, (given, wanted) in VARIANTS.items():
        with Home({name.replace("devices", "MEQM-devices"): given(text).encode("latin-1")
                   for name, text in before.items()}) as home:
            said = home.drive(["click ProjectDir", "type ProjectDir {home}/MAGNET",
                               "click vbProject", "click Command1"])
            lost = home.lost()
            now = {name: (home.project / name).read_bytes().decode("latin-1")
                   for name in before if (home.project / name).exists()}
        check(("said" in said) == (wanted is None) and not lost, f"{variant}: {said} {lost}")
        for name, text in now.items():
            expected = wanted(after[name]) if wanted else given(before[name])
            check(text == expected, f"{variant}, {name}:\n{text!r}\n{expected!r}")
        check(len(now) == (4 if wanted else 3), f"{variant}: {list(now)}")
    return {"corpora": [len(VARIANTS)],
            "external": page.table(("table", "column", "was", "comes back", "rule"),
                                   *differences())}
