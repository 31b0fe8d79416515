#include "platform/linux/ControlService.h"
#include "support/TestMain.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QSignalSpy>
#include <QTest>

// Runs on the private bus of the test session, where the well-known name is free.
class ControlServiceTest : public QObject {
    Q_OBJECT

private slots:
    void togglingOverTheBusReachesTheApp() {
        ControlService service;
        QVERIFY(service.publish());
        QVERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(ControlService::serviceName));
        QSignalSpy toggled(&service, &ControlService::toggleRequested);
        // Another client, as a desktop shortcut would be.
        QDBusConnection caller = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("caller"));
        caller.asyncCall(QDBusMessage::createMethodCall(ControlService::serviceName, ControlService::objectPath,
                                                        QStringLiteral("com.norvanebar.NorvaneBar"),
                                                        QStringLiteral("TogglePopover")));
        QVERIFY(toggled.wait(2000));
        QDBusConnection::disconnectFromBus(QStringLiteral("caller"));
        QDBusConnection::sessionBus().unregisterService(ControlService::serviceName);
    }

    void visibilityIsAPropertyWithAChangeSignal() {
        ControlService service;
        QVERIFY(service.publish());
        QSignalSpy changed(&service, &ControlService::PopoverVisibilityChanged);
        service.setPopoverVisible(true);
        service.setPopoverVisible(true);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).toBool(), true);
        QVERIFY(service.popoverVisible());
        QDBusConnection::sessionBus().unregisterService(ControlService::serviceName);
    }

    void introspectionOffersTheMethodSignalAndProperty() {
        ControlService service;
        QVERIFY(service.publish());
        QDBusInterface introspectable(ControlService::serviceName, ControlService::objectPath,
                                      QStringLiteral("org.freedesktop.DBus.Introspectable"));
        QDBusPendingReply<QString> reply = introspectable.asyncCall(QStringLiteral("Introspect"));
        reply.waitForFinished();
        const QString xml = reply.value();
        QVERIFY2(xml.contains(QStringLiteral("<method name=\"TogglePopover\"")), qPrintable(xml));
        QVERIFY(xml.contains(QStringLiteral("<signal name=\"PopoverVisibilityChanged\"")));
        QVERIFY(xml.contains(QStringLiteral("<property name=\"PopoverVisible\" type=\"b\" access=\"read\"")));
        QDBusConnection::sessionBus().unregisterService(ControlService::serviceName);
    }

    void aTakenNameIsReportedNotFatal() {
        QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("other"));
        QVERIFY(other.registerService(ControlService::serviceName));
        ControlService service;
        QVERIFY(!service.publish());
        other.unregisterService(ControlService::serviceName);
        QDBusConnection::disconnectFromBus(QStringLiteral("other"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ControlServiceTest)
#include "ControlServiceTest.moc"
