"""Prints what a screen reader finds of a program: python3 read_window.py PID ROWS

One line for each row of the tree: its role, name, description, whether it is expanded, and its cells, with tabs
between them. Waits up to 20 s until there are as many rows as asked for. Status 77: the bindings are missing.
"""
import sys
import time

try:
    import pyatspi
except ImportError as error:
    print(error)
    sys.exit(77)


def find(node, role):
    """The first object of this role below `node`."""
    for child in node:
        if child is not None:
            found = child if child.getRole() == role else find(child, role)
            if found is not None:
                return found
    return None


def rows_of(pid):
    for application in pyatspi.Registry.getDesktop(0):
        if application is not None and application.get_process_id() == pid:
            tree = find(application, pyatspi.ROLE_TREE)
            return [] if tree is None else list(tree)
    return []


def told(row):
    states = row.getState()
    fold = "-"
    if states.contains(pyatspi.STATE_EXPANDABLE):
        fold = "expanded" if states.contains(pyatspi.STATE_EXPANDED) else "collapsed"
    return [row.getLocalizedRoleName(), row.name, row.description, fold, *(cell.name for cell in row)]


def main():
    pid, count = int(sys.argv[1]), int(sys.argv[2])
    for _ in range(200):
        try:
            rows = rows_of(pid)
            if len(rows) >= count:
                print("\n".join("\t".join(told(row)) for row in rows))
                return 0
        except Exception as error:  # What was asked for has gone meanwhile.
            print(error, file=sys.stderr)
        time.sleep(0.1)
    return 1


sys.exit(main())
