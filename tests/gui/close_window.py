"""Closes the window of a program as a click on its cross does: python3 close_window.py PID

Waits up to 20 s until there is one. Needs a window manager.
"""
import ctypes
import sys
import time

x11 = ctypes.CDLL("libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
x11.XDefaultRootWindow.restype = x11.XInternAtom.restype = ctypes.c_ulong


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("rest", ctypes.c_long * 24)]


display = ctypes.c_void_p(x11.XOpenDisplay(None))
root = ctypes.c_ulong(x11.XDefaultRootWindow(display))


def atom(name):
    return ctypes.c_ulong(x11.XInternAtom(display, name, 0))


def numbers(window, name):
    kind, form = ctypes.c_ulong(), ctypes.c_int()
    count, rest, data = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.POINTER(ctypes.c_ulong)()
    x11.XGetWindowProperty(display, ctypes.c_ulong(window), atom(name), ctypes.c_long(0), ctypes.c_long(1024), 0,
                           ctypes.c_ulong(0), ctypes.byref(kind), ctypes.byref(form), ctypes.byref(count),
                           ctypes.byref(rest), ctypes.byref(data))
    return [data[i] for i in range(count.value)] if data else []


def close(window):
    substructure = ctypes.c_long(1 << 20 | 1 << 19)
    message = ClientMessage(type=33, display=display, window=window, format=32,
                            message_type=atom(b"_NET_CLOSE_WINDOW").value)
    x11.XSendEvent(display, root, 0, substructure, ctypes.byref(message))
    x11.XSync(display, 0)


for _ in range(200):
    found = [each for each in numbers(root.value, b"_NET_CLIENT_LIST")
             if int(sys.argv[1]) in numbers(each, b"_NET_WM_PID")]
    if found:
        close(found[0])
        sys.exit(0)
    time.sleep(0.1)
sys.exit(1)
