"""What the harness's portals share: the portal's bus name and object, and the request objects
through which a portal answers a call later, as org.freedesktop.portal.Request documents."""

import dbus.service

BUS_NAME = "org.freedesktop.portal.Desktop"
OBJECT_PATH = "/org/freedesktop/portal/desktop"
REQUEST_INTERFACE = "org.freedesktop.portal.Request"


class Request(dbus.service.Object):
    def __init__(self, bus, path):
        super().__init__(bus, path)
        self.path = path

    @dbus.service.signal(REQUEST_INTERFACE, signature="ua{sv}")
    def Response(self, response, results):
        pass


def new_request(bus, sender, options, fallback_token):
    """The request object of a call from `sender`, at .../request/SENDER/TOKEN where TOKEN is the
    caller's handle_token (or `fallback_token` without one), so the caller can listen before it asks."""
    token = str(options.get("handle_token", fallback_token))
    return Request(bus, "%s/request/%s/%s" % (OBJECT_PATH, sender[1:].replace(".", "_"), token))
