"""What a screen reader makes of the windows, by AT-SPI.

accessible.py NAME          a line "role: name" for each thing in the window of this name, and its description
accessible.py NAME BUTTON   presses the button
"""
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402


def children(parent):
    return [child for child in map(parent.get_child_at_index, range(parent.get_child_count())) if child]


def window_called(name):
    for application in children(Atspi.get_desktop(0)):
        for window in children(application):
            if window.get_name() == name:
                return window
    sys.exit(1)


def below(thing):
    yield thing
    for child in children(thing):
        yield from below(child)


def text_of(thing):
    description = thing.get_description()
    return f"{thing.get_role_name()}: {thing.get_name()}" + (f" ({description})" if description else "")


try:
    things = list(below(window_called(sys.argv[1])))
    if len(sys.argv) == 2:
        print("\n".join(text_of(thing) for thing in things if thing.get_name()))
    else:
        buttons = [thing for thing in things if thing.get_role_name() == "push button" and thing.get_name() == sys.argv[2]]
        buttons[0].get_action_iface().do_action(0)
except GLib.Error as gone:  # a window that closes while it is looked at
    sys.exit(str(gone))
