#include "core/shell/HotKeyManager.h"

#include <algorithm>

HotKeyManager::HotKeyManager(GlobalShortcutService& service, QObject* parent)
    : QObject(parent)
    , m_service(service) {
    // Queued, so that a handler never runs inside the desktop's event handling, also when the
    // service tells of the press from there.
    connect(&m_service, &GlobalShortcutService::pressed, this, &HotKeyManager::firePressed, Qt::QueuedConnection);
}

QString HotKeyManager::keys(HotKeyPreset preset) {
    switch (preset) {
    case HotKeyPreset::optionShiftSpace:
        return QStringLiteral("Alt+Shift+Space");
    case HotKeyPreset::controlShiftSpace:
        return QStringLiteral("Ctrl+Shift+Space");
    case HotKeyPreset::commandShiftSpace:
        return QStringLiteral("Super+Shift+Space");
    case HotKeyPreset::optionShiftN:
        return QStringLiteral("Alt+Shift+N");
    case HotKeyPreset::disabled:
        break;
    }
    return {};
}

QString HotKeyManager::description(quint8 slot) {
    switch (slot) {
    case composeSlot:
        return tr("New task from anywhere");
    case screenshotSlot:
        return tr("Screenshot capture");
    default:
        return tr("Screen recording");
    }
}

void HotKeyManager::registerHotKey(quint8 slot, HotKeyPreset preset, const Handler& handler) {
    const quint32 id = idOf(slot);
    unregister(slot);
    m_handlers.insert(id, handler);
    if (preset == HotKeyPreset::disabled) {
        return;
    }
    // One combination reaches one slot: the first that holds it.
    const bool heldByAnother = std::find(m_hotKeyRefs.cbegin(), m_hotKeyRefs.cend(), preset) != m_hotKeyRefs.cend();
    if (!heldByAnother && m_service.bind(id, keys(preset), description(slot))) {
        m_hotKeyRefs.insert(id, preset);
    } else {
        m_hotKeyRefs.remove(id);
    }
}

void HotKeyManager::unregister(quint8 slot) {
    const quint32 id = idOf(slot);
    if (m_hotKeyRefs.remove(id)) {
        m_service.release(id);
    }
}

void HotKeyManager::applyCompose(HotKeyPreset preset) {
    apply(composeSlot, preset);
}

void HotKeyManager::applyScreenshot(HotKeyPreset preset) {
    apply(screenshotSlot, preset);
}

void HotKeyManager::applyScreenRecording(HotKeyPreset preset) {
    apply(screenRecordingSlot, preset);
}

bool HotKeyManager::isBound(quint8 slot) const {
    return m_hotKeyRefs.contains(idOf(slot));
}

void HotKeyManager::apply(quint8 slot, HotKeyPreset preset) {
    registerHotKey(slot, preset, m_handlers.value(idOf(slot), [] {}));
}

void HotKeyManager::firePressed(quint32 id) {
    const Handler handler = m_handlers.value(id);
    if (handler && m_hotKeyRefs.contains(id)) {
        handler();
    }
}
