#include "platform/linux/PortalGlobalShortcuts.h"
#include "core/shell/HotKeyManager.h"
#include "platform/linux/DesktopGlobalShortcuts.h"
#include "support/DBusServiceProcess.h"
#include "support/HotKeyFixture.h"
#include "support/TestMain.h"

#include <QDBusArgument>
#include <QTest>

namespace {
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString testInterface = QStringLiteral("org.norvanebar.Test.GlobalShortcuts");
} // namespace

// The GlobalShortcuts portal of tests/harness/global_shortcuts_portal.py on the session's private
// bus: the session, the shortcuts bound with their preferred triggers, and Activated as a press.
class PortalGlobalShortcutsTest : public QObject {
    Q_OBJECT

    DBusServiceProcess m_portal{QStringLiteral(NORVANEBAR_GLOBAL_SHORTCUTS_PORTAL_SCRIPT),
                                QStringLiteral("org.freedesktop.portal.Desktop")};
    std::unique_ptr<HotKeyFixture<PortalGlobalShortcuts>> m_keys;

    // Shortcut id -> trigger, as the portal holds them.
    QMap<QString, QString> bound() const {
        const QVariantList answer = m_portal.call(portalPath, testInterface, QStringLiteral("Bound"));
        QMap<QString, QString> shortcuts;
        if (!answer.isEmpty()) {
            answer.constFirst().value<QDBusArgument>() >> shortcuts;
        }
        return shortcuts;
    }

    bool press(const QString& trigger) const {
        return m_portal.call(portalPath, testInterface, QStringLiteral("Press"), {trigger}).value(0).toBool();
    }

    QStringList calls() const {
        return m_portal.call(portalPath, testInterface, QStringLiteral("Calls")).value(0).toStringList();
    }

private slots:
    void init() {
        QVERIFY(m_portal.start());
        m_keys = std::make_unique<HotKeyFixture<PortalGlobalShortcuts>>();
    }

    void cleanup() {
        m_keys.reset();
        QVERIFY(m_portal.stop());
    }

    void thePortalIsChosenFirstWhereTheDesktopOffersIt() {
        QVERIFY(PortalGlobalShortcuts::isAvailable());
        QVERIFY(qobject_cast<PortalGlobalShortcuts*>(desktopGlobalShortcuts().get()));
        QVERIFY(m_portal.stop());
        QVERIFY(!PortalGlobalShortcuts::isAvailable());
        QVERIFY(!qobject_cast<PortalGlobalShortcuts*>(desktopGlobalShortcuts().get()));
    }

    void eachSlotIsBoundWithItsPresetAsPreferredTrigger() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        m_keys->registerRecorded(HotKeyManager::screenshotSlot, HotKeyPreset::commandShiftSpace,
                                 QStringLiteral("screenshot"));
        const QMap<QString, QString> expected{{QStringLiteral("1"), QStringLiteral("ALT+SHIFT+space")},
                                              {QStringLiteral("2"), QStringLiteral("LOGO+SHIFT+space")}};
        QTRY_COMPARE(bound(), expected);
        // One session for all of them.
        QCOMPARE(calls().count(QStringLiteral("CreateSession")), 1);
    }

    void activatedRunsTheHandlerOfItsShortcut() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        m_keys->registerRecorded(HotKeyManager::screenshotSlot, HotKeyPreset::optionShiftN,
                                 QStringLiteral("screenshot"));
        QTRY_COMPARE(bound().size(), 2);
        QVERIFY(press(QStringLiteral("ALT+SHIFT+n")));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("screenshot")});
        QVERIFY(press(QStringLiteral("ALT+SHIFT+space")));
        QTRY_COMPARE(m_keys->fired, (QStringList{QStringLiteral("screenshot"), QStringLiteral("compose")}));
    }

    void choosingDisabledRemovesTheShortcutAndALaterPresetWorks() {
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        QTRY_COMPARE(bound().size(), 1);
        m_keys->hotKeys.applyCompose(HotKeyPreset::disabled);
        QTRY_VERIFY(bound().isEmpty());
        m_keys->hotKeys.applyCompose(HotKeyPreset::controlShiftSpace);
        QTRY_COMPARE(bound().value(QStringLiteral("1")), QStringLiteral("CTRL+SHIFT+space"));
        QVERIFY(press(QStringLiteral("CTRL+SHIFT+space")));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("compose")});
    }

    void aTriggerTheDesktopRefusesNeverFires() {
        m_portal.call(portalPath, testInterface, QStringLiteral("Take"), {QStringLiteral("ALT+SHIFT+space")});
        m_keys->registerRecorded(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, QStringLiteral("compose"));
        m_keys->registerRecorded(HotKeyManager::screenshotSlot, HotKeyPreset::optionShiftN,
                                 QStringLiteral("screenshot"));
        QTRY_COMPARE(bound().keys(), QStringList{QStringLiteral("2")});
        QVERIFY(!press(QStringLiteral("ALT+SHIFT+space")));
        QVERIFY(press(QStringLiteral("ALT+SHIFT+n")));
        QTRY_COMPARE(m_keys->fired, QStringList{QStringLiteral("screenshot")});
    }
};

NORVANEBAR_TEST_MAIN(PortalGlobalShortcutsTest)
#include "PortalGlobalShortcutsTest.moc"
