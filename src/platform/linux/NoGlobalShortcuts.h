#pragma once

#include "core/platform/GlobalShortcutService.h"

// A desktop that offers no way to bind a global shortcut to a program, as GNOME on Wayland without
// the GlobalShortcuts portal. The desktop's own shortcut settings can still call NorvaneBar.
class NoGlobalShortcuts : public GlobalShortcutService {
    Q_OBJECT

public:
    using GlobalShortcutService::GlobalShortcutService;

    bool bindsShortcuts() const override { return false; }
    bool bind(quint32 /*id*/, const QString& /*keys*/, const QString& /*description*/) override { return false; }
    void release(quint32 /*id*/) override {}
};
