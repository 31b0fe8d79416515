#pragma once

#include "core/platform/GlobalShortcutService.h"

#include <QDBusConnection>
#include <memory>

// The first way of binding global shortcuts that this desktop offers: the GlobalShortcuts portal,
// KDE's kglobalaccel, key grabs on X11, or none.
std::unique_ptr<GlobalShortcutService>
desktopGlobalShortcuts(const QDBusConnection& bus = QDBusConnection::sessionBus());
