#include "support/AppStateFixture.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

// The central state's own fields, without a service.
class AppStateTest : public QObject {
    Q_OBJECT

private slots:
    void theActiveTabStartsAtComposeAndNotifiesOnlyOnChange() {
        AppStateFixture fixture;
        AppState& app = fixture.start();
        QCOMPARE(app.activeTab(), PopoverTab::compose);
        QSignalSpy changes(&app, &AppState::activeTabChanged);
        app.setActiveTab(PopoverTab::compose);
        QCOMPARE(changes.count(), 0);
        app.setActiveTab(PopoverTab::myDay);
        QCOMPARE(app.activeTab(), PopoverTab::myDay);
        QCOMPARE(changes.count(), 1);
    }

    void theTabsHaveTheirRawValues() {
        QCOMPARE(rawValue(PopoverTab::compose), QStringLiteral("compose"));
        QCOMPARE(rawValue(PopoverTab::myDay), QStringLiteral("myDay"));
        QCOMPARE(fromRawValue<PopoverTab>(QStringLiteral("myDay")), std::optional(PopoverTab::myDay));
    }

    void notificationsGoToTheCenterAndRemindersToTheFileTheDesktopGave() {
        AppStateFixture fixture;
        AppState& app = fixture.start();
        app.notifications().notifyBulkCreateFailed(QStringLiteral("e"), QUuid::createUuid(), nullptr);
        QCOMPARE(fixture.notificationCenter().posted().size(), 1);
        QCOMPARE(app.notifications().reminders().filePath(), fixture.remindersPath());
    }

    void everyLaunchStartsAtCompose() {
        AppStateFixture fixture;
        fixture.start().setActiveTab(PopoverTab::myDay);
        QCOMPARE(fixture.start().activeTab(), PopoverTab::compose);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AppStateTest)
#include "AppStateTest.moc"
