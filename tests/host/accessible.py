#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Reads the host's browser as a screen reader does: over a real accessibility bus.

Usage: accessible.py HOST-PROGRAM. Run it on an X server and a session bus of its own.
"""

import os
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

PATIENCE = 30  # seconds
events = []


def fail(reason):
    print("FAIL: " + reason)
    sys.exit(1)


def wait_for(what, condition):
    """Runs the event loop until the condition gives something."""
    end = time.monotonic() + PATIENCE
    context = GLib.MainContext.default()
    while time.monotonic() < end:
        while context.pending():
            context.iteration(False)
        try:
            found = condition()
        except GLib.Error:
            found = None  # it went while it was asked
        if found:
            return found
        time.sleep(0.02)
    fail(what + " did not come within %d seconds; events: %s" % (PATIENCE, events))


def children(node):
    return [node.get_child_at_index(i) for i in range(node.get_child_count())]


def find(node, condition, depth=12):
    if condition(node):
        return node
    if depth == 0 or node.get_role() == Atspi.Role.LIST:
        return None
    for child in children(node):
        found = child and find(child, condition, depth - 1)
        if found:
            return found
    return None


def announce_reader():
    """Says on the session bus that accessibility is wanted, as a screen reader does when it starts."""
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    for name in ("IsEnabled", "ScreenReaderEnabled"):
        wanted = GLib.Variant("(ssv)", ("org.a11y.Status", name, GLib.Variant("b", True)))
        bus.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set", wanted, None,
                      Gio.DBusCallFlags.NONE, 1000 * PATIENCE, None)


def find_host():
    for app in children(Atspi.get_desktop(0)):
        if app and "nodebrowser-host" in (app.get_name() or ""):
            return app
    return None


def on_event(event):
    source = event.source
    events.append((event.type, source.get_name(), source.get_description()))


def check(what, actual, expected):
    if actual != expected:
        fail("%s: %r instead of %r" % (what, actual, expected))


def main():
    host = subprocess.Popen([sys.argv[1]])
    try:
        # The reader comes when the program is up: Qt 5 may miss one that is announced in the middle of its start.
        subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--pid", str(host.pid)], check=True,
                       timeout=PATIENCE, stdout=subprocess.DEVNULL)
        announce_reader()
        Atspi.init()
        app = wait_for("the host", find_host)
        listener = Atspi.EventListener.new(on_event)
        for kind in ("object:selection-changed", "object:state-changed:selected",
                     "object:property-change:accessible-description"):
            listener.register(kind)
            # Qt 5 loses one of two kinds that come at the same time, so it answers something else in between.
            time.sleep(0.1)
            app.clear_cache()
            app.get_name()
        items = wait_for("the list of items", lambda: find(
            app, lambda node: node.get_role() == Atspi.Role.LIST and node.get_name() == "Items"))
        count = items.get_child_count()
        if count < 50:
            fail("only %d rows" % count)
        check("what the list says", items.get_description(), "%d found" % count)

        field = find(app, lambda node: node.get_name() == "Search")
        if not field:
            fail("no search field")
        if not find(app, lambda node: node.get_name() == "Clear search"):
            fail("no clear button")

        row = next((row for row in children(items) if row.get_name() == "Add"), None)
        if not row:
            fail("no row \"Add\" among " + ", ".join(row.get_name() for row in children(items)[:20]))
        check("the role of a row", row.get_role(), Atspi.Role.LIST_ITEM)
        area = row.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
        check("the height of a row", area.height, 24)
        action = row.get_action_iface()
        names = [action.get_action_name(i) for i in range(action.get_n_actions())]
        if "Select" not in names:
            fail("the actions of a row are %s" % names)
        action.do_action(names.index("Select"))
        wait_for("the selection", lambda: row.get_state_set().contains(Atspi.StateType.SELECTED))
        wait_for("the event of the selection",
                 lambda: any("select" in kind and name == "Add" for kind, name, _ in events))

        field.get_editable_text_iface().set_text_contents("blend")
        wait_for("fewer rows", lambda: 0 < items.get_child_count() < count)
        found = "%d found" % items.get_child_count()
        wait_for("how many were found",
                 lambda: any(name == "Items" and said == found for _, name, said in events))
        print("PASS: %d rows, a row selected by its name, %s" % (count, found))
    finally:
        host.kill()
        host.wait()


if __name__ == "__main__":
    os.environ.setdefault("LC_ALL", "C.UTF-8")
    main()
