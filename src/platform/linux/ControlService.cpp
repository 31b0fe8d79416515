#include "platform/linux/ControlService.h"

#include <QDBusConnection>

ControlService::ControlService(QObject* parent)
    : QObject(parent) {}

bool ControlService::publish() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return false;
    }
    const auto exported = QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportScriptableSignals |
                          QDBusConnection::ExportScriptableProperties;
    return bus.registerObject(objectPath, this, exported) && bus.registerService(serviceName);
}

void ControlService::setPopoverVisible(bool visible) {
    if (m_popoverVisible == visible) {
        return;
    }
    m_popoverVisible = visible;
    emit PopoverVisibilityChanged(visible);
}

void ControlService::TogglePopover() {
    emit toggleRequested();
}
