#!/usr/bin/env python3
"""urls.py PROGRAM: has thousands of generated URLs opened on a simulated desktop with one Space, and compares what the
program says to each with what follows from Python's reading of the URL.

Python and the program disagree on purpose where these rules differ:
- A text is a URL only as RFC 3986 has it: any character that it has no place for makes it none.
- Everything is percent-decoded after it was taken apart, the host too, and a "+" stands for itself. Escapes in host,
  path or query that make no UTF-8 make the text no URL.
- Path components that are empty, or exactly "/" after decoding, do not count; "." and ".." are names.
"""

import re
import urllib.parse

from simulation import ODD_CHARACTERS, SUPPORT, compare, draw, journal

UNRESERVED = "abcXYZ019-._~"
IN_PATH = UNRESERVED + "!$&'()*+,;=:@"
IN_QUERY = IN_PATH.replace("&", "").replace("=", "") + "/?"
NEVER = ' "<>\\^`{|}\t\n\x7f'
COUNT = 3000


def text(random, alphabet, most):
    """Some characters: of the alphabet, beyond ASCII, and escaped."""
    made = ""
    for _ in range(random.randint(0, most)):
        kind = random.random()
        if kind < 0.75:
            made += random.choice(alphabet)
        elif kind < 0.85:
            made += random.choice(ODD_CHARACTERS)
        elif kind < 0.995:
            made += urllib.parse.quote(random.choice(ODD_CHARACTERS + "/?#&=%+ \x01\x00" + UNRESERVED), safe="")
            if random.random() < 0.5:
                made = re.sub("%[0-9A-F]{2}$", lambda escape: escape.group().lower(), made)
        else:
            made += random.choice(["%ff", "%C3", "%ED%A0%80", "%F5%80%80%80"])
    return made


def host(random):
    name = random.choice(["switch"] * 6 + ["Switch", "s%77itch", "SWITC%48", "elsewhere", "[::1]", "127.0.0.1", ""])
    if name == "" and random.random() < 0.5:
        name = text(random, UNRESERVED + "!$&'()*+,;=", 5)
    before = random.choice([""] * 9 + ["user@", "user:pass%40@", ":@"])
    after = random.choice([""] * 9 + [":", ":80"])
    return before + name + after if name else ""


def path(random):
    words = ["current", "CURRENT", "1", "+2", "-3", "04", "9223372036854775807", "9223372036854775808", "+", "3a",
             "..", ".", "%2F", "%2f"]
    made = ""
    for _ in range(random.choice([0, 1, 1, 1, 2, 3])):
        made += "/" + (random.choice(words) if random.random() < 0.4 else text(random, IN_PATH, 8))
    return made


def query(random):
    items, names = [], set()
    for _ in range(random.randint(1, 4)):
        name = random.choice(["name", "space", "spac%65", text(random, IN_QUERY, 4)])
        # A key that stands twice ends the program.
        if (key := urllib.parse.unquote_to_bytes(name)) not in names:
            names.add(key)
            value = random.choice(["7", "+8", "-0"]) if random.random() < 0.3 else text(random, IN_QUERY + "=", 8)
            items.append(random.choice([name, name + "=" + value, name + "=" + value, name + "=" + value]))
    return "?" + "&".join(items)


def url(random):
    made = random.choice(["tallowin"] * 20 + ["TALLOWIN", "tallowinx"]) + ":"
    made += "//" + host(random) if random.random() < 0.95 else ""
    made += path(random)
    made += query(random) if random.random() < 0.5 else ""
    made += "#" + text(random, IN_QUERY, 4) if random.random() < 0.2 else ""
    if random.random() < 0.05:
        at = random.randint(len("tallowin:"), len(made))
        made = made[:at] + random.choice(NEVER) + made[at:]
    return made


def space_message(component):
    """What is said of a Space that is asked for so. The only one is number 1 and has a name that is never drawn."""
    if component.lower() == "current" or component == "":
        return None
    if re.fullmatch("[+-]?[0-9]+", component, re.ASCII) and -(2**63) <= int(component) < 2**63:
        return None if int(component) == 1 else "There is no Desktop %d" % int(component)
    return "No Space is called " + component


def decoded(part):
    return urllib.parse.unquote(part, errors="strict")


def expected(made):
    """What the program says when this URL is opened; None for nothing."""
    if any(character in made for character in NEVER):
        return None
    parts = urllib.parse.urlsplit(made)
    try:
        name = decoded(parts.hostname or "")
        components = [component for component in map(decoded, parts.path.split("/")) if component not in ("", "/")]
        items = dict(urllib.parse.parse_qsl(parts.query.replace("+", "%2B"), keep_blank_values=True, errors="strict"))
    except UnicodeDecodeError:
        return None
    if parts.scheme != "tallowin" or name.lower() != "switch":
        return "Tallowin does not understand " + (name or made)
    if components:
        return space_message(components[0])
    if "name" in items:
        return "No Space is called " + items["name"] if items["name"] else None
    message = space_message(items.get("space", ""))
    return message if message and message.startswith("There") else None


def main():
    random = draw()
    urls = [url(random) for _ in range(COUNT)]
    records = journal({
        "managedDisplaySpaces": [{"Display Identifier": "Main", "Current Space": {"ManagedSpaceID": 1, "uuid": "A"},
                                  "Spaces": [{"ManagedSpaceID": 1, "uuid": "A"}]}],
        "files": {SUPPORT + "spaces.json": '{"A": {"name": "\\u2042"}}'},
        "script": [{"at": 1 + 0.01 * i, "do": "openURL", "url": made} for i, made in enumerate(urls)],
    })
    said = []
    for record in records:
        if record["op"] == "script":
            said.append(None)
        elif record["op"] == "toast" and said:
            said[-1] = record["text"]
    # A host is quoted as it was written, which Python does not keep.
    lower = lambda message: message and message.lower()
    compare([(made, lower(expected(made)), lower(seen)) for made, seen in zip(urls, said, strict=True)])


main()
