#include "platform/linux/XcbGlobalShortcuts.h"
#include "core/shell/HotKeyManager.h"
#include "platform/linux/X11Connection.h"
#include "support/HotKeyFixture.h"
#include "support/TestMain.h"

#include <QProcess>
#include <QTest>
#include <memory>
#include <xcb/xcb.h>

namespace {
constexpr xcb_keysym_t spaceKeysym = 0x0020;
constexpr xcb_keysym_t numLockKeysym = 0xff7f;

bool xdotool(const QStringList& arguments) {
    return QProcess::execute(QStringLiteral("xdotool"), arguments) == 0;
}

bool pressKeys(const QString& keys) {
    return xdotool({QStringLiteral("key"), keys});
}

// Another X client on the same display, as another program holding a shortcut.
class OtherClient {
public:
    OtherClient()
        : m_connection(xcb_connect(nullptr, nullptr)) {}
    ~OtherClient() { xcb_disconnect(m_connection); }

    xcb_window_t root() const { return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root; }

    xcb_keycode_t keycodeOf(xcb_keysym_t keysym) const {
        const xcb_setup_t* setup = xcb_get_setup(m_connection);
        const int count = setup->max_keycode - setup->min_keycode + 1;
        const ReplyPointer<xcb_get_keyboard_mapping_reply_t> reply(
            xcb_get_keyboard_mapping_reply(m_connection,
                                           xcb_get_keyboard_mapping(m_connection, setup->min_keycode, count), nullptr),
            &free);
        const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(reply.get());
        for (int index = 0; index < xcb_get_keyboard_mapping_keysyms_length(reply.get()); ++index) {
            if (keysyms[index] == keysym) {
                return xcb_keycode_t(setup->min_keycode + index / reply->keysyms_per_keycode);
            }
        }
        return 0;
    }

    // Grabs the key with these modifiers on the root window; false when the server refuses.
    bool grab(xcb_keysym_t keysym, uint16_t modifiers) {
        const xcb_void_cookie_t cookie = xcb_grab_key_checked(m_connection, 1, root(), modifiers, keycodeOf(keysym),
                                                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        const ReplyPointer<xcb_generic_error_t> error(xcb_request_check(m_connection, cookie), &free);
        return !error;
    }

    // The modifier and lock state of the keyboard now.
    uint16_t keyboardState() const {
        const ReplyPointer<xcb_query_pointer_reply_t> reply(
            xcb_query_pointer_reply(m_connection, xcb_query_pointer(m_connection, root()), nullptr), &free);
        return reply ? reply->mask : 0;
    }

private:
    xcb_connection_t* m_connection;
};
} // namespace

// Key grabs on the root window of the harness's Xvfb, pressed with xdotool as a person would.
class XcbGlobalShortcutsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<HotKeyFixture<XcbGlobalShortcuts>> m_keys;
    bool m_numLockLit = false;

    // A bound sentinel pressed after the keys under test: once it fired, whatever those keys did
    // has arrived too, since the server sends events in order.
    bool pressThenSentinel(const QString& keys) {
        m_keys->registerRecorded(HotKeyManager::screenRecordingSlot, HotKeyPreset::commandShiftSpace,
                                 QStringLiteral("sentinel"));
        if (!m_keys->hotKeys.isBound(HotKeyManager::screenRecordingSlot) || !pressKeys(keys) ||
            !pressKeys(QStringLiteral("super+shift+space"))) {
            return false;
        }
        return QTest::qWaitFor([this] { return m_keys->fired.contains(QStringLiteral("sentinel")); }, 5000);
    }

private slots:
    void init() {
        QVERIFY(XcbGlobalShortcuts::isAvailable());
        m_keys = std::make_unique<HotKeyFixture<XcbGlobalShortcuts>>();
    }

    void cleanup() {
        m_keys.reset();
        // Num Lock goes off again also when a test failed with it on.
        if (m_numLockLit) {
            OtherClient observer;
            const uint16_t lit = observer.keyboardState();
            QVERIFY(pressKeys(QStringLiteral("Num_Lock")));
            QTRY_VERIFY(observer.keyboardState() != lit);
            m_numLockLit = false;
        }
    }

    void aBoundCombinationIsPressedFromAnywhere() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        QVERIFY(m_keys->hotKeys.isBound(HotKeyManager::composeSlot));
        QVERIFY(pressKeys(QStringLiteral("alt+shift+space")));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("compose")});
        QVERIFY(pressKeys(QStringLiteral("alt+shift+n")));
        QVERIFY(pressKeys(QStringLiteral("alt+shift+space")));
        QTRY_COMPARE(m_keys->fired, (QStringList{QStringLiteral("compose"), QStringLiteral("compose")}));
    }

    void numLockOnStillWorks() {
        OtherClient observer;
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftN, QStringLiteral("compose"));
        const uint16_t before = observer.keyboardState();
        QVERIFY(pressKeys(QStringLiteral("Num_Lock")));
        m_numLockLit = true;
        QTRY_VERIFY(observer.keyboardState() != before);
        QVERIFY(pressKeys(QStringLiteral("alt+shift+n")));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("compose")});
    }

    void changingAPresetReleasesTheOldGrabBeforeTheNewOne() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        OtherClient other;
        QVERIFY(!other.grab(spaceKeysym, XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT));
        m_keys->hotKeys.applyCompose(HotKeyPreset::controlShiftSpace);
        QVERIFY(m_keys->hotKeys.isBound(HotKeyManager::composeSlot));
        // The old combination is free for any other program now.
        QVERIFY(other.grab(spaceKeysym, XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT));
        QVERIFY(pressKeys(QStringLiteral("ctrl+shift+space")));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("compose")});
    }

    void aCombinationGrabbedByAnotherClientStaysUnbound() {
        OtherClient other;
        QVERIFY(other.grab(spaceKeysym, XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT));
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        QVERIFY(!m_keys->hotKeys.isBound(HotKeyManager::composeSlot));
        QVERIFY(pressThenSentinel(QStringLiteral("alt+shift+space")));
        QCOMPARE(m_keys->fired, QStringList{QStringLiteral("sentinel")});
        // None of its variants stayed grabbed either: once the other client is gone, it binds.
        m_keys->hotKeys.applyCompose(HotKeyPreset::optionShiftN);
        QVERIFY(m_keys->hotKeys.isBound(HotKeyManager::composeSlot));
    }

    void aLitNumLockVariantHeldByAnotherClientRefusesTheWholeCombination() {
        OtherClient other;
        // Num Lock is the second modifier under Xvfb's keymap.
        QVERIFY(other.grab(spaceKeysym, XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_2));
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        QVERIFY(!m_keys->hotKeys.isBound(HotKeyManager::composeSlot));
        // What was grabbed before the refusal was given back.
        QVERIFY(other.grab(spaceKeysym, XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT));
    }

    void twoSlotsWithOnePresetOnlyTheFirstFires() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftN, QStringLiteral("compose"));
        m_keys->registerRecorded(HotKeyManager::screenshotSlot, HotKeyPreset::optionShiftN,
                                 QStringLiteral("screenshot"));
        QVERIFY(!m_keys->hotKeys.isBound(HotKeyManager::screenshotSlot));
        QVERIFY(pressThenSentinel(QStringLiteral("alt+shift+n")));
        QCOMPARE(m_keys->fired, (QStringList{QStringLiteral("compose"), QStringLiteral("sentinel")}));
    }

    void disablingGivesTheCombinationBack() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        m_keys->hotKeys.applyCompose(HotKeyPreset::disabled);
        OtherClient other;
        QVERIFY(other.grab(spaceKeysym, XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT));
    }
};

NORVANEBAR_TEST_MAIN(XcbGlobalShortcutsTest)
#include "XcbGlobalShortcutsTest.moc"
