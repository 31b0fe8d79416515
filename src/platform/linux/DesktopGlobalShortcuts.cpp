#include "platform/linux/DesktopGlobalShortcuts.h"

#include "platform/linux/KGlobalAccelShortcuts.h"
#include "platform/linux/NoGlobalShortcuts.h"
#include "platform/linux/PortalGlobalShortcuts.h"
#include "platform/linux/XcbGlobalShortcuts.h"

std::unique_ptr<GlobalShortcutService> desktopGlobalShortcuts(const QDBusConnection& bus) {
    if (PortalGlobalShortcuts::isAvailable(bus)) {
        return std::make_unique<PortalGlobalShortcuts>(bus);
    }
    if (KGlobalAccelShortcuts::isAvailable(bus)) {
        return std::make_unique<KGlobalAccelShortcuts>(bus);
    }
    if (XcbGlobalShortcuts::isAvailable()) {
        return std::make_unique<XcbGlobalShortcuts>();
    }
    return std::make_unique<NoGlobalShortcuts>();
}
