#include "core/shell/StatusItemBadge.h"
#include "core/support/Translations.h"
#include "support/TestMain.h"

#include <QTest>

class StatusItemBadgeTest : public QObject {
    Q_OBJECT

    static inline const QString newTask = QStringLiteral("NorvaneBar — new Norvane task");

private slots:
    // The English catalogue, as the program loads it, gives the singular of one.
    void initTestCase() { QVERIFY(Translations::install(*QCoreApplication::instance())); }

    void withBothBackgroundWorkAndDueTasksTheBadgeShowsTheBackgroundCount() {
        QCOMPARE(StatusItemBadge::make(2, 5, true),
                 (StatusItemBadge{QStringLiteral("2"), QStringLiteral("2 background tasks in progress")}));
    }

    void withNoDueTasksAndNoWorkThereIsNoBadge() {
        QCOMPARE(StatusItemBadge::make(0, 0, true), (StatusItemBadge{QString(), newTask}));
        QCOMPARE(StatusItemBadge::make(0, 0, false), (StatusItemBadge{QString(), newTask}));
    }

    void oneBackgroundTaskIsNamedInTheSingular() {
        QCOMPARE(StatusItemBadge::make(1, 0, false),
                 (StatusItemBadge{QStringLiteral("1"), QStringLiteral("1 background task in progress")}));
    }

    void manyBackgroundTasksAreCountedInFull() {
        QCOMPARE(StatusItemBadge::make(120, 0, false),
                 (StatusItemBadge{QStringLiteral("120"), QStringLiteral("120 background tasks in progress")}));
    }

    void dueTasksShowTheirCountWhenTheSettingIsOn() {
        QCOMPARE(StatusItemBadge::make(0, 4, true), (StatusItemBadge{QStringLiteral("4"), newTask}));
    }

    void dueTasksShowNothingWhenTheSettingIsOff() {
        QCOMPARE(StatusItemBadge::make(0, 4, false), (StatusItemBadge{QString(), newTask}));
    }

    void countsBelowZeroShowNothing() {
        QCOMPARE(StatusItemBadge::make(-1, -3, true), (StatusItemBadge{QString(), newTask}));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(StatusItemBadgeTest)
#include "StatusItemBadgeTest.moc"
