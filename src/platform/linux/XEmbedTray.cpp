#include "platform/linux/XEmbedTray.h"

#include "platform/linux/X11Connection.h"

XEmbedTray::XEmbedTray(QObject* parent)
    : QObject(parent) {
    xcb_connection_t* connection = x11Connection();
    if (!connection) {
        return;
    }
    // Trays of the first X screen; NorvaneBar's popover lives there too.
    m_selectionAtom = internAtom(connection, QByteArrayLiteral("_NET_SYSTEM_TRAY_S0"));
    m_managerAtom = internAtom(connection, QByteArrayLiteral("MANAGER"));
    qGuiApp->installNativeEventFilter(this);
}

XEmbedTray::~XEmbedTray() {
    if (qGuiApp) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

bool XEmbedTray::isRunning() const {
    xcb_connection_t* connection = x11Connection();
    if (!connection || m_selectionAtom == XCB_ATOM_NONE) {
        return false;
    }
    const auto cookie = xcb_get_selection_owner(connection, m_selectionAtom);
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&free)> reply(
        xcb_get_selection_owner_reply(connection, cookie, nullptr), &free);
    return reply && reply->owner != XCB_NONE;
}

bool XEmbedTray::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    if (eventType != "xcb_generic_event_t" || m_managerAtom == XCB_ATOM_NONE) {
        return false;
    }
    const auto* event = static_cast<xcb_generic_event_t*>(message);
    if ((event->response_type & ~0x80) != XCB_CLIENT_MESSAGE) {
        return false;
    }
    const auto* clientMessage = static_cast<const xcb_client_message_event_t*>(message);
    if (clientMessage->type == m_managerAtom && clientMessage->data.data32[1] == m_selectionAtom) {
        emit started();
    }
    return false;
}
