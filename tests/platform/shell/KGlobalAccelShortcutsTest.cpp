#include "platform/linux/KGlobalAccelShortcuts.h"
#include "core/shell/HotKeyManager.h"
#include "platform/linux/DesktopGlobalShortcuts.h"
#include "support/DBusServiceProcess.h"
#include "support/HotKeyFixture.h"
#include "support/TestMain.h"

#include <QDBusArgument>
#include <QKeySequence>
#include <QTest>

namespace {
const QString daemonPath = QStringLiteral("/kglobalaccel");
const QString testInterface = QStringLiteral("org.norvanebar.Test.KGlobalAccel");

int keyOf(QKeyCombination combination) {
    return combination.toCombined();
}

const int altShiftSpace = keyOf(Qt::ALT | Qt::SHIFT | Qt::Key_Space);
const int altShiftN = keyOf(Qt::ALT | Qt::SHIFT | Qt::Key_N);
const int metaShiftSpace = keyOf(Qt::META | Qt::SHIFT | Qt::Key_Space);
const int ctrlShiftSpace = keyOf(Qt::CTRL | Qt::SHIFT | Qt::Key_Space);
} // namespace

// KDE's kglobalaccel as tests/harness/kglobalaccel.py plays it on the session's private bus: each
// shortcut an action with its key, a key held by another action refused, and the press signal of
// the component.
class KGlobalAccelShortcutsTest : public QObject {
    Q_OBJECT

    DBusServiceProcess m_daemon{QStringLiteral(NORVANEBAR_KGLOBALACCEL_SCRIPT), QStringLiteral("org.kde.kglobalaccel")};
    std::unique_ptr<HotKeyFixture<KGlobalAccelShortcuts>> m_keys;

    // "component/action" -> key, as the daemon holds them.
    QMap<QString, int> keys() const {
        const QVariantList answer = m_daemon.call(daemonPath, testInterface, QStringLiteral("Keys"));
        QMap<QString, int> held;
        if (!answer.isEmpty()) {
            answer.constFirst().value<QDBusArgument>() >> held;
        }
        return held;
    }

    bool press(int key) const {
        return m_daemon.call(daemonPath, testInterface, QStringLiteral("Press"), {key}).value(0).toBool();
    }

private slots:
    void init() {
        QVERIFY(m_daemon.start());
        m_keys = std::make_unique<HotKeyFixture<KGlobalAccelShortcuts>>();
    }

    void cleanup() {
        m_keys.reset();
        QVERIFY(m_daemon.stop());
    }

    void kglobalaccelIsChosenWhereThereIsNoPortal() {
        QVERIFY(KGlobalAccelShortcuts::isAvailable());
        QVERIFY(qobject_cast<KGlobalAccelShortcuts*>(desktopGlobalShortcuts().get()));
        QVERIFY(m_daemon.stop());
        QVERIFY(!qobject_cast<KGlobalAccelShortcuts*>(desktopGlobalShortcuts().get()));
    }

    void eachSlotIsAnActionWithItsKey() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        m_keys->registerRecorded(HotKeyManager::screenshotSlot, HotKeyPreset::commandShiftSpace,
                                 QStringLiteral("screenshot"));
        m_keys->registerRecorded(HotKeyManager::screenRecordingSlot, HotKeyPreset::controlShiftSpace,
                                 QStringLiteral("movie"));
        const QMap<QString, int> expected{{QStringLiteral("norvanebar/shortcut-1"), altShiftSpace},
                                          {QStringLiteral("norvanebar/shortcut-2"), metaShiftSpace},
                                          {QStringLiteral("norvanebar/shortcut-3"), ctrlShiftSpace}};
        QCOMPARE(keys(), expected);
    }

    void thePressSignalRunsTheHandlerOfItsAction() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        m_keys->registerRecorded(HotKeyManager::screenshotSlot, HotKeyPreset::optionShiftN,
                                 QStringLiteral("screenshot"));
        QVERIFY(press(altShiftN));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("screenshot")});
        QVERIFY(press(altShiftSpace));
        QTRY_COMPARE(m_keys->fired, (QStringList{QStringLiteral("screenshot"), QStringLiteral("compose")}));
    }

    void aKeyAnotherActionHoldsStaysUnbound() {
        m_daemon.call(daemonPath, testInterface, QStringLiteral("Take"), {altShiftSpace});
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        QVERIFY(!m_keys->hotKeys.isBound(HotKeyManager::composeSlot));
        QVERIFY(!keys().contains(QStringLiteral("norvanebar/shortcut-1")));
        m_keys->hotKeys.applyCompose(HotKeyPreset::optionShiftN);
        QVERIFY(m_keys->hotKeys.isBound(HotKeyManager::composeSlot));
        QCOMPARE(keys().value(QStringLiteral("norvanebar/shortcut-1")), altShiftN);
    }

    void choosingDisabledGivesTheKeyBackAndALaterPresetWorks() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        m_keys->hotKeys.applyCompose(HotKeyPreset::disabled);
        QVERIFY(keys().isEmpty());
        m_keys->hotKeys.applyCompose(HotKeyPreset::controlShiftSpace);
        QVERIFY(press(ctrlShiftSpace));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("compose")});
    }
};

NORVANEBAR_TEST_MAIN(KGlobalAccelShortcutsTest)
#include "KGlobalAccelShortcutsTest.moc"
