"""Prints what a screen reader finds of a program: python3 read_window.py PID ROWS [PANEL]

One line for each row of the tree: its role, name, description, whether it is expanded, and its cells, with tabs
between them. With PANEL, one line for each button below the object of that name instead: its role, name and
description. Waits up to 20 s until there are as many as asked for. Status 77: the bindings are missing.
"""
import sys
import time

try:
    import pyatspi
except ImportError as error:
    print(error)
    sys.exit(77)


def find(node, role):
    """The first object of this role below `node` that the user sees: a hidden list may be a tree, too."""
    for child in node:
        if child is not None:
            fits = child.getRole() == role and child.getState().contains(pyatspi.STATE_SHOWING)
            found = child if fits else find(child, role)
            if found is not None:
                return found
    return None


def rows_of(pid):
    for application in pyatspi.Registry.getDesktop(0):
        if application is not None and application.get_process_id() == pid:
            tree = find(application, pyatspi.ROLE_TREE)
            return [] if tree is None else list(tree)
    return []


def named(node, name):
    """The first object of this name below `node`."""
    for child in node:
        if child is not None:
            found = child if child.name == name else named(child, name)
            if found is not None:
                return found
    return None


def buttons_of(pid, panel):
    for application in pyatspi.Registry.getDesktop(0):
        if application is not None and application.get_process_id() == pid:
            place = named(application, panel)
            return [] if place is None else pyatspi.findAllDescendants(
                place, lambda each: each.getRole() == pyatspi.ROLE_PUSH_BUTTON)
    return []


def told(row):
    if row.getRole() == pyatspi.ROLE_PUSH_BUTTON:
        return [row.getLocalizedRoleName(), row.name, row.description]
    states = row.getState()
    fold = "-"
    if states.contains(pyatspi.STATE_EXPANDABLE):
        fold = "expanded" if states.contains(pyatspi.STATE_EXPANDED) else "collapsed"
    return [row.getLocalizedRoleName(), row.name, row.description, fold, *(cell.name for cell in row)]


def main():
    pid, count = int(sys.argv[1]), int(sys.argv[2])
    for _ in range(200):
        try:
            rows = buttons_of(pid, sys.argv[3]) if len(sys.argv) > 3 else rows_of(pid)
            if len(rows) >= count:
                print("\n".join("\t".join(told(row)) for row in rows))
                return 0
        except Exception as error:  # What was asked for has gone meanwhile.
            print(error, file=sys.stderr)
        time.sleep(0.1)
    return 1


sys.exit(main())
