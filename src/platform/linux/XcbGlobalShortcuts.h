#pragma once

#include "core/platform/GlobalShortcutService.h"

#include <QAbstractNativeEventFilter>
#include <QHash>
#include <cstdint>
#include <optional>

// Global shortcuts on X11: a key grab on the root window for each combination, in every variant of
// Num Lock, Caps Lock and Scroll Lock, so that a lit lock doesn't stop a shortcut. A combination
// that another client has grabbed is refused by the server and stays unbound.
class XcbGlobalShortcuts : public GlobalShortcutService, public QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit XcbGlobalShortcuts(QObject* parent = nullptr);
    ~XcbGlobalShortcuts() override;

    // Whether the application runs on an X server.
    static bool isAvailable();

    bool bindsShortcuts() const override { return true; }
    bool bind(quint32 id, const QString& keys, const QString& description) override;
    void release(quint32 id) override;
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    struct Grab {
        uint8_t keycode = 0;
        uint16_t modifiers = 0;
    };
    struct ModifierMasks {
        uint16_t alt = 0;
        uint16_t super = 0;
        uint16_t numLock = 0;
        uint16_t scrollLock = 0;
    };

    static ModifierMasks modifierMasks();
    std::optional<Grab> grabFor(const QString& keys) const;
    // The modifiers of a grab with each combination of the locks added.
    QList<uint16_t> lockVariants(uint16_t modifiers) const;
    void ungrab(const Grab& grab);

    ModifierMasks m_masks;
    QHash<quint32, Grab> m_grabs;
};
