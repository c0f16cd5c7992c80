"""A full-screen program in one colour that writes down what it is told: a line for each press of a key or a button,
and for each change of the focus."""

import sys

from Xlib import X, Xatom, display

connection = display.Display()
screen = connection.screen()
red, green, blue = (int(part) for part in sys.argv[1].split(","))
window = screen.root.create_window(0, 0, screen.width_in_pixels, screen.height_in_pixels, 0, screen.root_depth,
    background_pixel=red << 16 | green << 8 | blue,
    event_mask=X.KeyPressMask | X.ButtonPressMask | X.FocusChangeMask | X.ExposureMask)
window.set_wm_name("Full screen")
window.change_property(connection.intern_atom("_NET_WM_STATE"), Xatom.ATOM, 32,
    [connection.intern_atom("_NET_WM_STATE_FULLSCREEN")])
window.map()
connection.flush()
while True:
    event = connection.next_event()
    if event.type == X.Expose:
        window.clear_area()
        print("shown", flush=True)
    elif event.type == X.KeyPress:
        print("key", connection.keycode_to_keysym(event.detail, 0), flush=True)
    elif event.type == X.ButtonPress:
        print("button", event.root_x, event.root_y, flush=True)
    elif event.type == X.FocusIn and event.mode == X.NotifyNormal:
        print("focused", flush=True)
    elif event.type == X.FocusOut and event.mode == X.NotifyNormal:
        print("unfocused", flush=True)
