#include "core/shell/HotKeyManager.h"
#include "support/HotKeyFixture.h"
#include "support/ManualGlobalShortcuts.h"
#include "support/TestMain.h"

#include <QTest>
#include <QThread>

class HotKeyManagerTest : public QObject {
    Q_OBJECT

    std::unique_ptr<HotKeyFixture<ManualGlobalShortcuts>> m_keys;

private slots:
    void init() { m_keys = std::make_unique<HotKeyFixture<ManualGlobalShortcuts>>(); }

    void eachPresetHasItsCombination() {
        QCOMPARE(HotKeyManager::keys(HotKeyPreset::optionShiftSpace), QStringLiteral("Alt+Shift+Space"));
        QCOMPARE(HotKeyManager::keys(HotKeyPreset::controlShiftSpace), QStringLiteral("Ctrl+Shift+Space"));
        QCOMPARE(HotKeyManager::keys(HotKeyPreset::commandShiftSpace), QStringLiteral("Super+Shift+Space"));
        QCOMPARE(HotKeyManager::keys(HotKeyPreset::optionShiftN), QStringLiteral("Alt+Shift+N"));
        QVERIFY(HotKeyManager::keys(HotKeyPreset::disabled).isEmpty());
    }

    void eachSlotIsBoundUnderItsNumberPlusOne() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, "compose");
        m_keys->registerRecorded(HotKeyManager::screenshotSlot, HotKeyPreset::optionShiftN, "shot");
        m_keys->registerRecorded(HotKeyManager::screenRecordingSlot, HotKeyPreset::commandShiftSpace, "movie");
        QCOMPARE(m_keys->service.bound, (QMap<quint32, QString>{{1, QStringLiteral("Alt+Shift+Space")},
                                                                {2, QStringLiteral("Alt+Shift+N")},
                                                                {3, QStringLiteral("Super+Shift+Space")}}));
        QCOMPARE(m_keys->service.descriptions.value(1), QStringLiteral("New task from anywhere"));
        QCOMPARE(m_keys->service.descriptions.value(2), QStringLiteral("Screenshot capture"));
        QCOMPARE(m_keys->service.descriptions.value(3), QStringLiteral("Screen recording"));
        m_keys->service.press(QStringLiteral("Alt+Shift+N"));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("shot")});
    }

    void aPressRunsTheHandlerLaterOnTheMainThread() {
        Qt::HANDLE firedOn = nullptr;
        m_keys->hotKeys.registerHotKey(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, [&] {
            firedOn = QThread::currentThreadId();
            m_keys->fired.append(QStringLiteral("compose"));
        });
        m_keys->service.press(QStringLiteral("Alt+Shift+Space"));
        // Not inside the desktop's event handling: the press is told, the handler has not run yet.
        QVERIFY(m_keys->fired.isEmpty());
        QTRY_COMPARE(m_keys->fired.size(), 1);
        QCOMPARE(firedOn, QThread::currentThreadId());
    }

    void choosingDisabledRemovesTheRegistrationAndKeepsTheHandler() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, "compose");
        m_keys->hotKeys.applyCompose(HotKeyPreset::disabled);
        QVERIFY(m_keys->service.bound.isEmpty());
        QVERIFY(!m_keys->hotKeys.isBound(HotKeyManager::composeSlot));
        QCOMPARE(m_keys->service.calls.last(), QStringLiteral("release 1"));

        m_keys->hotKeys.applyCompose(HotKeyPreset::controlShiftSpace);
        QVERIFY(m_keys->hotKeys.isBound(HotKeyManager::composeSlot));
        m_keys->service.press(QStringLiteral("Ctrl+Shift+Space"));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("compose")});
    }

    void disabledFromTheStartKeepsTheHandlerToo() {
        m_keys->registerRecorded(HotKeyManager::screenshotSlot, HotKeyPreset::disabled, "shot");
        QVERIFY(m_keys->service.calls.isEmpty());
        m_keys->hotKeys.applyScreenshot(HotKeyPreset::optionShiftN);
        m_keys->service.press(QStringLiteral("Alt+Shift+N"));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("shot")});
    }

    void twoSlotsWithTheSamePresetOnlyTheFirstFires() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftN, "compose");
        m_keys->registerRecorded(HotKeyManager::screenshotSlot, HotKeyPreset::optionShiftN, "shot");
        QVERIFY(m_keys->hotKeys.isBound(HotKeyManager::composeSlot));
        QVERIFY(!m_keys->hotKeys.isBound(HotKeyManager::screenshotSlot));
        m_keys->service.press(QStringLiteral("Alt+Shift+N"));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("compose")});
        // And it stays so: a second press fires the first slot once more, the second never.
        m_keys->service.press(QStringLiteral("Alt+Shift+N"));
        QTRY_COMPARE(m_keys->fired, (QStringList{QStringLiteral("compose"), QStringLiteral("compose")}));
    }

    void changingAPresetUnregistersTheOldOneBeforeTheNewRegistration() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, "compose");
        m_keys->hotKeys.applyCompose(HotKeyPreset::controlShiftSpace);
        QCOMPARE(m_keys->service.calls,
                 (QStringList{QStringLiteral("bind 1 Alt+Shift+Space"), QStringLiteral("release 1"),
                              QStringLiteral("bind 1 Ctrl+Shift+Space")}));
        m_keys->service.press(QStringLiteral("Alt+Shift+Space"));
        m_keys->service.press(QStringLiteral("Ctrl+Shift+Space"));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("compose")});
    }

    void aCombinationTakenByAnotherProgramSilentlyStaysUnbound() {
        m_keys->service.takenByOthers.insert(QStringLiteral("Alt+Shift+Space"));
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, "compose");
        QVERIFY(!m_keys->hotKeys.isBound(HotKeyManager::composeSlot));
        // Nothing is released later for a binding that never was.
        m_keys->hotKeys.applyCompose(HotKeyPreset::optionShiftN);
        QCOMPARE(m_keys->service.calls,
                 (QStringList{QStringLiteral("bind 1 Alt+Shift+Space"), QStringLiteral("bind 1 Alt+Shift+N")}));
        m_keys->service.press(QStringLiteral("Alt+Shift+N"));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("compose")});
    }

    void applyingASlotWithoutAHandlerBindsItWithAnEmptyOne() {
        m_keys->hotKeys.applyScreenRecording(HotKeyPreset::commandShiftSpace);
        QVERIFY(m_keys->hotKeys.isBound(HotKeyManager::screenRecordingSlot));
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, "compose");
        m_keys->service.press(QStringLiteral("Super+Shift+Space"));
        m_keys->service.press(QStringLiteral("Alt+Shift+Space"));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("compose")});
    }

    void aPressQueuedBeforeTheReleaseRunsNothing() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, "compose");
        m_keys->registerRecorded(HotKeyManager::screenshotSlot, HotKeyPreset::optionShiftN, "shot");
        m_keys->service.press(QStringLiteral("Alt+Shift+Space"));
        m_keys->hotKeys.unregister(HotKeyManager::composeSlot);
        m_keys->service.press(QStringLiteral("Alt+Shift+N"));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("shot")});
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(HotKeyManagerTest)
#include "HotKeyManagerTest.moc"
