#!/usr/bin/env python3
"""csv_export.py PROGRAM: has generated records of time exported by a simulated program, and compares what Python's csv
module reads in the export with what the records say: days in order; in a day the Space with the most time first, those
with the same time by id; minutes rounded, halves up. Lines end in a line feed, the last one excepted. A Space that is
gone and has no name is called "Removed Space"."""

import csv
import decimal
import io
import json

from simulation import ODD_CHARACTERS, SUPPORT, compare, draw, file_at_end, journal

EXPORT = "/home/user/times.csv"


def name(random):
    return "".join(random.choice('",;\n\r\t \'ab"' + ODD_CHARACTERS) for _ in range(random.randint(1, 8)))


def seconds(random):
    whole = random.randint(0, 100000)
    return random.choice([whole, whole / 8, whole * 30, whole * 1e-6, random.random() * 1e7, 90, 29.999999999999996])


def minutes(time):
    return str((decimal.Decimal(time / 60)).quantize(decimal.Decimal(1), decimal.ROUND_HALF_UP))


def main():
    random = draw()
    # Records under such ids are kept when their Spaces are gone; those under others are not.
    names = {"managed-%d" % i: name(random) for i in range(200)}
    ids = list(names) + ["gone-%d" % i for i in range(50)]
    days = {"20%02d-%02d-%02d" % (random.randint(10, 25), random.randint(1, 12), random.randint(1, 28)):
            {id: seconds(random) for id in random.sample(ids, random.randint(0, 20))} for _ in range(400)}
    records = journal({
        "preferences": {"timeTracking": False},
        "files": {SUPPORT + "stats.json": json.dumps(days),
                  SUPPORT + "spaces.json": json.dumps({id: {"name": name} for id, name in names.items()})},
        "script": [{"at": 1, "do": "runCommand", "arguments": ["time", "--csv", EXPORT]}, {"at": 2, "do": "quit"}],
    })

    expected = [["date", "space", "minutes"]]
    for day, times in sorted(days.items()):
        for id, time in sorted(times.items(), key=lambda entry: (-entry[1], entry[0])):
            expected.append([day, names.get(id, "Removed Space"), minutes(time)])
    text = file_at_end(records, EXPORT)
    seen = list(csv.reader(io.StringIO(text, newline=""), strict=True))
    compare([("lines", len(expected), len(seen)), ("last character", "\n", text[-1:])] +
            [("line %d" % (i + 1), *lines) for i, lines in enumerate(zip(expected, seen))])


main()
