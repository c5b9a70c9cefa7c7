#!/usr/bin/python3
"""A panel that takes status items by D-Bus and prints the name of each one that comes, until it is ended."""

from gi.repository import Gio, GLib

NAME = "org.kde.StatusNotifierWatcher"
INTERFACE = f"""<node><interface name="{NAME}">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
</interface></node>"""


def register(connection, sender, path, interface, method, arguments, call):
    print(arguments.unpack()[0], flush=True)
    call.return_value(None)


def serve(connection, name):
    interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
    connection.register_object("/StatusNotifierWatcher", interface, register, None, None)


Gio.bus_own_name(Gio.BusType.SESSION, NAME, Gio.BusNameOwnerFlags.NONE, serve, None, None)
GLib.MainLoop().run()
