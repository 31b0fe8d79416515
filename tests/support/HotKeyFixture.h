#pragma once

#include "core/shell/HotKeyManager.h"

#include <QStringList>

// A HotKeyManager over a global shortcut service of the test's choosing, and the names of the
// handlers that ran, in the order they ran.
template <typename Service> struct HotKeyFixture {
    template <typename... Arguments>
    explicit HotKeyFixture(Arguments&&... arguments)
        : service(std::forward<Arguments>(arguments)...) {}

    // Registers the slot with a handler that writes `name` down when it runs.
    void registerRecorded(quint8 slot, HotKeyPreset preset, const QString& name) {
        hotKeys.registerHotKey(slot, preset, [this, name] { fired.append(name); });
    }

    Service service;
    HotKeyManager hotKeys{service};
    QStringList fired;
};
