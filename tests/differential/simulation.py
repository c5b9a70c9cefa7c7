"""Runs the program on a simulated desktop, with input that was drawn at random from a number that it prints."""

import json
import os
import random
import subprocess
import sys
import tempfile

SUPPORT = "/home/user/.local/share/Tallowin/"
PREFERENCES = "/home/user/.config/tallowin/preferences.json"
# Beyond ASCII: of two, three and four bytes, a combining mark, white space, and what is special to some reader.
ODD_CHARACTERS = "äßéЖ漢字🙂\u0301\u00a0\u2028\ufeff\u200b"


def draw():
    """The source of all randomness of a test. TALLOWIN_RANDOM_START repeats what another run has printed."""
    start = int(os.environ.get("TALLOWIN_RANDOM_START", "20260302"))
    print("TALLOWIN_RANDOM_START=%d" % start)
    return random.Random(start)


def journal(scenario):
    """The records that the program named on the command line writes down on this desktop."""
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "scenario.json")
        with open(path, "w", encoding="utf-8") as file:
            json.dump(scenario, file)
        run = subprocess.run([sys.argv[1], "--simulate", path], capture_output=True, check=False)
    if run.returncode != 0:
        sys.exit("status %d: %s" % (run.returncode, run.stderr.decode("utf-8", "replace")))
    return [json.loads(line) for line in run.stdout.split(b"\n") if line]


def file_at_end(records, path):
    """The text of a file when the program has ended."""
    return records[-1]["files"][path]


def compare(cases):
    """Ends the test with a failure that names the first cases in which what was seen is not what was expected."""
    wrong = [case for case in cases if case[1] != case[2]]
    for what, expected, seen in wrong[:10]:
        print("%r\n  expected: %r\n  seen:     %r" % (what, expected, seen))
    print("%d cases, %d differ" % (len(cases), len(wrong)))
    sys.exit(1 if wrong or not cases else 0)
