#pragma once

#include "core/platform/GlobalShortcutService.h"
#include "core/settings/HotKeyPreset.h"

#include <QHash>
#include <QObject>
#include <functional>

// The system-wide shortcuts of NorvaneBar, one per slot: compose, screenshot and screen recording.
// Each is bound with the desktop under the slot's number plus one; a press runs the slot's handler
// on the main thread, queued, never inside the desktop's event handling. A combination the desktop
// refuses, or one that another slot already holds, silently stays unbound; the stored preset stays.
class HotKeyManager : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void()>;

    static constexpr quint8 composeSlot = 0;
    static constexpr quint8 screenshotSlot = 1;
    static constexpr quint8 screenRecordingSlot = 2;

    explicit HotKeyManager(GlobalShortcutService& service, QObject* parent = nullptr);

    // The combination of a preset as the desktop takes it ("Alt+Shift+Space"); empty for disabled.
    static QString keys(HotKeyPreset preset);

    // Named so because `register` is a C++ keyword.
    // Unbinds the slot, keeps `handler` for it (also for disabled), then binds the preset.
    void registerHotKey(quint8 slot, HotKeyPreset preset, const Handler& handler);
    void unregister(quint8 slot);

    // Bind the slot again with a new preset and the handler it has, or none.
    void applyCompose(HotKeyPreset preset);
    void applyScreenshot(HotKeyPreset preset);
    void applyScreenRecording(HotKeyPreset preset);

    // Whether the slot's combination is bound now.
    bool isBound(quint8 slot) const;
    bool bindsShortcuts() const { return m_service.bindsShortcuts(); }

private:
    static quint32 idOf(quint8 slot) { return quint32(slot) + 1; }
    // What the slot's shortcut does, as the desktop's shortcut settings list it.
    static QString description(quint8 slot);
    void apply(quint8 slot, HotKeyPreset preset);
    void firePressed(quint32 id);

    GlobalShortcutService& m_service;
    QHash<quint32, Handler> m_handlers;
    // The combination each bound id holds.
    QHash<quint32, HotKeyPreset> m_hotKeyRefs;
};
