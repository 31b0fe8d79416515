#include "platform/linux/XcbGlobalShortcuts.h"

#include "platform/linux/X11Connection.h"

#include <QStringList>
#include <memory>
#include <vector>

namespace {
// Keysyms of the X protocol's keyboard encoding.
constexpr xcb_keysym_t spaceKeysym = 0x0020;
constexpr xcb_keysym_t numLockKeysym = 0xff7f;
constexpr xcb_keysym_t scrollLockKeysym = 0xff14;
constexpr xcb_keysym_t altLeftKeysym = 0xffe9;
constexpr xcb_keysym_t altRightKeysym = 0xffea;
constexpr xcb_keysym_t superLeftKeysym = 0xffeb;
constexpr xcb_keysym_t superRightKeysym = 0xffec;
// Where no modifier carries Alt or Super, the usual places.
constexpr uint16_t usualAltMask = XCB_MOD_MASK_1;
constexpr uint16_t usualSuperMask = XCB_MOD_MASK_4;
constexpr uint16_t keyModifierBits = 0xff;
constexpr int modifierCount = 8;

// The keysyms of every keycode, as the server maps the keyboard now.
class KeyboardMapping {
public:
    explicit KeyboardMapping(xcb_connection_t* connection) {
        const xcb_setup_t* setup = xcb_get_setup(connection);
        m_minKeycode = setup->min_keycode;
        const auto cookie =
            xcb_get_keyboard_mapping(connection, setup->min_keycode, setup->max_keycode - setup->min_keycode + 1);
        const ReplyPointer<xcb_get_keyboard_mapping_reply_t> reply(
            xcb_get_keyboard_mapping_reply(connection, cookie, nullptr), &free);
        if (!reply) {
            return;
        }
        m_perKeycode = reply->keysyms_per_keycode;
        const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(reply.get());
        m_keysyms.assign(keysyms, keysyms + xcb_get_keyboard_mapping_keysyms_length(reply.get()));
    }

    bool carries(xcb_keycode_t keycode, xcb_keysym_t keysym) const {
        if (m_perKeycode == 0 || keycode < m_minKeycode) {
            return false;
        }
        const size_t first = size_t(keycode - m_minKeycode) * m_perKeycode;
        for (size_t column = 0; column < m_perKeycode && first + column < m_keysyms.size(); ++column) {
            if (m_keysyms[first + column] == keysym) {
                return true;
            }
        }
        return false;
    }

    // The first keycode that carries the keysym; 0 when the keyboard has none.
    xcb_keycode_t keycodeOf(xcb_keysym_t keysym) const {
        for (size_t index = 0; m_perKeycode != 0 && index < m_keysyms.size(); ++index) {
            if (m_keysyms[index] == keysym) {
                return xcb_keycode_t(m_minKeycode + index / m_perKeycode);
            }
        }
        return 0;
    }

private:
    xcb_keycode_t m_minKeycode = 0;
    uint8_t m_perKeycode = 0;
    std::vector<xcb_keysym_t> m_keysyms;
};

// The keysym of a key's name in a combination: "Space", or a letter or digit.
std::optional<xcb_keysym_t> keysymOf(const QString& key) {
    if (key.compare(QStringLiteral("Space"), Qt::CaseInsensitive) == 0) {
        return spaceKeysym;
    }
    if (key.size() == 1 && key.at(0).isLetterOrNumber() && key.at(0).unicode() < 0x80) {
        return xcb_keysym_t(key.at(0).toLower().unicode());
    }
    return std::nullopt;
}
} // namespace

XcbGlobalShortcuts::XcbGlobalShortcuts(QObject* parent)
    : GlobalShortcutService(parent)
    , m_masks(modifierMasks()) {
    if (qGuiApp) {
        qGuiApp->installNativeEventFilter(this);
    }
}

XcbGlobalShortcuts::~XcbGlobalShortcuts() {
    if (qGuiApp) {
        qGuiApp->removeNativeEventFilter(this);
    }
    for (const Grab& grab : std::as_const(m_grabs)) {
        ungrab(grab);
    }
}

bool XcbGlobalShortcuts::isAvailable() {
    return x11Connection() != nullptr;
}

XcbGlobalShortcuts::ModifierMasks XcbGlobalShortcuts::modifierMasks() {
    ModifierMasks masks{.alt = usualAltMask, .super = usualSuperMask};
    xcb_connection_t* connection = x11Connection();
    if (!connection) {
        return masks;
    }
    const KeyboardMapping mapping(connection);
    const ReplyPointer<xcb_get_modifier_mapping_reply_t> reply(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr), &free);
    if (!reply) {
        return masks;
    }
    const xcb_keycode_t* keycodes = xcb_get_modifier_mapping_keycodes(reply.get());
    const int perModifier = reply->keycodes_per_modifier;
    const auto maskOf = [&](std::initializer_list<xcb_keysym_t> keysyms) -> uint16_t {
        for (int modifier = 0; modifier < modifierCount; ++modifier) {
            for (int index = 0; index < perModifier; ++index) {
                const xcb_keycode_t keycode = keycodes[modifier * perModifier + index];
                for (const xcb_keysym_t keysym : keysyms) {
                    if (keycode != 0 && mapping.carries(keycode, keysym)) {
                        return uint16_t(1U << modifier);
                    }
                }
            }
        }
        return 0;
    };
    masks.numLock = maskOf({numLockKeysym});
    masks.scrollLock = maskOf({scrollLockKeysym});
    if (const uint16_t alt = maskOf({altLeftKeysym, altRightKeysym})) {
        masks.alt = alt;
    }
    if (const uint16_t super = maskOf({superLeftKeysym, superRightKeysym})) {
        masks.super = super;
    }
    return masks;
}

std::optional<XcbGlobalShortcuts::Grab> XcbGlobalShortcuts::grabFor(const QString& keys) const {
    xcb_connection_t* connection = x11Connection();
    QStringList parts = keys.split(QLatin1Char('+'));
    if (!connection || parts.isEmpty()) {
        return std::nullopt;
    }
    const std::optional<xcb_keysym_t> keysym = keysymOf(parts.takeLast());
    const xcb_keycode_t keycode = keysym ? KeyboardMapping(connection).keycodeOf(*keysym) : 0;
    if (keycode == 0) {
        return std::nullopt;
    }
    Grab grab{.keycode = keycode};
    for (const QString& modifier : std::as_const(parts)) {
        if (modifier == QLatin1String("Shift")) {
            grab.modifiers |= XCB_MOD_MASK_SHIFT;
        } else if (modifier == QLatin1String("Ctrl")) {
            grab.modifiers |= XCB_MOD_MASK_CONTROL;
        } else if (modifier == QLatin1String("Alt")) {
            grab.modifiers |= m_masks.alt;
        } else if (modifier == QLatin1String("Super")) {
            grab.modifiers |= m_masks.super;
        } else {
            return std::nullopt;
        }
    }
    return grab;
}

QList<uint16_t> XcbGlobalShortcuts::lockVariants(uint16_t modifiers) const {
    QList<uint16_t> variants{modifiers};
    for (const uint16_t lock : {uint16_t(XCB_MOD_MASK_LOCK), m_masks.numLock, m_masks.scrollLock}) {
        if (lock == 0) {
            continue;
        }
        for (qsizetype index = 0, count = variants.size(); index < count; ++index) {
            variants.append(variants.at(index) | lock);
        }
    }
    return variants;
}

bool XcbGlobalShortcuts::bind(quint32 id, const QString& keys, const QString& /*description*/) {
    const std::optional<Grab> grab = grabFor(keys);
    if (!grab) {
        return false;
    }
    xcb_connection_t* connection = x11Connection();
    const xcb_window_t root = rootWindow(connection);
    QList<xcb_void_cookie_t> cookies;
    for (const uint16_t modifiers : lockVariants(grab->modifiers)) {
        cookies.append(xcb_grab_key_checked(connection, 1, root, modifiers, grab->keycode, XCB_GRAB_MODE_ASYNC,
                                            XCB_GRAB_MODE_ASYNC));
    }
    // The server refuses a grab that another client holds (BadAccess).
    bool refused = false;
    for (const xcb_void_cookie_t cookie : std::as_const(cookies)) {
        const ReplyPointer<xcb_generic_error_t> error(xcb_request_check(connection, cookie), &free);
        refused = refused || error != nullptr;
    }
    if (refused) {
        ungrab(*grab);
        return false;
    }
    m_grabs.insert(id, *grab);
    return true;
}

void XcbGlobalShortcuts::release(quint32 id) {
    const auto found = m_grabs.constFind(id);
    if (found == m_grabs.cend()) {
        return;
    }
    ungrab(found.value());
    m_grabs.erase(found);
}

void XcbGlobalShortcuts::ungrab(const Grab& grab) {
    xcb_connection_t* connection = x11Connection();
    if (!connection) {
        return;
    }
    const xcb_window_t root = rootWindow(connection);
    for (const uint16_t modifiers : lockVariants(grab.modifiers)) {
        xcb_ungrab_key(connection, grab.keycode, root, modifiers);
    }
    xcb_flush(connection);
}

bool XcbGlobalShortcuts::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<xcb_generic_event_t*>(message);
    if ((event->response_type & ~0x80) != XCB_KEY_PRESS) {
        return false;
    }
    const auto* press = static_cast<const xcb_key_press_event_t*>(message);
    const uint16_t locks = XCB_MOD_MASK_LOCK | m_masks.numLock | m_masks.scrollLock;
    const uint16_t modifiers = press->state & keyModifierBits & ~locks;
    for (auto it = m_grabs.cbegin(); it != m_grabs.cend(); ++it) {
        if (it->keycode == press->detail && it->modifiers == modifiers) {
            emit pressed(it.key());
            return true;
        }
    }
    return false;
}
