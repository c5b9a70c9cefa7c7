#!/usr/bin/env python3
"""json_files.py PROGRAM: puts generated JSON into files that a simulated program reads and writes again, and has jq
and Python judge what became of it; and hands in damaged texts, of which the program must take those that Python takes.

Python takes more than the program on purpose: the program takes a text only as RFC 8259 has it (no NaN and Infinity),
in UTF-8 throughout (no half of a surrogate pair), with numbers that a double can hold, and, of files that somebody
hands in, with no key twice in one object."""

import json
import re
import subprocess

from simulation import ODD_CHARACTERS, PREFERENCES, SUPPORT, compare, draw, file_at_end, journal

TEXTS = "ab \"\\/\b\f\n\r\t\x00\x1f\x7f{}[],:" + ODD_CHARACTERS
HANDED_IN = 500


def number(random):
    return random.choice([0, -1, 2**63 - 1, -(2**63), 2**64 - 1, 0.1, -0.0, 1e-7, 5e-324, 1.7976931348623157e308, 1e22,
                          random.random(), random.randint(-2**53, 2**53), random.uniform(-1e20, 1e20)])


def text(random):
    return "".join(random.choice(TEXTS) for _ in range(random.randint(0, 6)))


def value(random, depth=4):
    kind = random.randint(0, 5 if depth > 0 else 3)
    if kind <= 1:
        return number(random) if kind == 0 else text(random)
    if kind <= 3:
        return random.choice([True, False, None])
    if kind == 4:
        return [value(random, depth - 1) for _ in range(random.randint(0, 4))]
    return {text(random): value(random, depth - 1) for _ in range(random.randint(0, 4))}


def written(random, json_value):
    """As some program may write it."""
    return json.dumps(json_value, ensure_ascii=random.random() < 0.5, indent=random.choice([None, 0, 3, "\t"]),
                      separators=random.choice([(",", ":"), (" , ", " : "), (",\r\n", ":\t")]))


PIECES = ["", "", ",", '"', "\\", "}", "]", "[", "{", "0", "-", ".", "e", "1e999", "\\u12", "\\ud800", "\\ud83d\\ude42",
          "NaN", "-Infinity", '"\\ud800"', "01", "+1", "1.", "\x01", "\t", "true", '"k":1,"k":2', "//", "'"]


def damaged(random, good):
    """With pieces put between or over characters, or over whole numbers and words."""
    for _ in range(random.choice([0, 1, 1, 2])):
        tokens = [token.span() for token in re.finditer("true|false|null|-?[0-9][0-9.e+-]*", good)]
        begin = random.randint(0, len(good))
        span = random.choice(tokens) if tokens and random.random() < 0.4 else (begin, begin + random.randint(0, 1))
        good = good[:span[0]] + random.choice(PIECES) + good[span[1]:]
    return good


def canonical(json_text, prefix):
    """What jq makes of the members whose keys begin so: one line, keys sorted."""
    members = "with_entries(select(.key | startswith($prefix)))"
    return subprocess.run(["jq", "-cS", "--arg", "prefix", prefix, members], input=json_text.encode(),
                          capture_output=True, check=True).stdout.decode()


def refuse(what):
    raise ValueError(what)


def without_doubles(pairs):
    return dict(pairs) if len(dict(pairs)) == len(pairs) else refuse("a key twice")


def real(digits):
    return float(digits) if abs(float(digits)) != float("inf") else refuse(digits)


def integer(digits):
    return int(digits) if -(2**63) <= int(digits) < 2**64 else real(digits)


def template_in(json_text):
    """The template in a text that somebody hands in; None when it is refused."""
    try:
        template = json.loads(json_text, object_pairs_hook=without_doubles, parse_constant=refuse, parse_float=real,
                              parse_int=integer)
        json.dumps(template, ensure_ascii=False).encode()
    except ValueError:
        return None
    good = isinstance(template, dict) and isinstance(template.get("name"), str) and template.get("slots") == []
    return template if good else None


def main():
    random = draw()
    preferences = written(random, {"p%d" % i: value(random) for i in range(300)})
    spaces = written(random, {"managed-%d" % i: {"name": "x", "new-%d" % i: value(random)} for i in range(300)})
    members = [damaged(random, written(random, value(random))) for _ in range(HANDED_IN)]
    handed_in = ['{"name":"T%d","summary":"","slots":[],"more":%s}' % member for member in enumerate(members)]
    records = journal({
        "files": {PREFERENCES: preferences, SUPPORT + "spaces.json": spaces,
                  **{"/t/%d" % i: text for i, text in enumerate(handed_in)}},
        "script": [{"at": 3 + 0.01 * i, "do": "runCommand", "arguments": ["template", "import", "/t/%d" % i]}
                   for i in range(HANDED_IN)] +
                  [{"at": 1, "do": "runCommand", "arguments": ["edit", "1", "--name", "Mail"]},
                   {"at": 9, "do": "quit"}],
    })

    cases = []
    for what, before, prefix, added in [(PREFERENCES, preferences, "p", "recentSpaceNames"),
                                        (SUPPORT + "spaces.json", spaces, "managed-", "Mail")]:
        after = file_at_end(records, what)
        cases += [(what + " was written", True, added in after),
                  (what + " by Python", json.loads(before), {key: member for key, member in json.loads(after).items()
                                                             if key.startswith(prefix)}),
                  (what + " by jq", canonical(before, prefix), canonical(after, prefix))]
    templates = [template_in(text) for text in handed_in]
    statuses = [record["status"] for record in records if record["op"] == "answer" and "status" in record]
    cases += [(text, template is not None, status == 0)
              for text, template, status in zip(handed_in, templates, statuses[1:], strict=True)]
    cases.append(("templates.json", [template for template in templates if template is not None],
                  json.loads(file_at_end(records, SUPPORT + "templates.json"))))
    print("%d of %d texts are templates" % (sum(template is not None for template in templates), HANDED_IN))
    compare(cases)


main()
