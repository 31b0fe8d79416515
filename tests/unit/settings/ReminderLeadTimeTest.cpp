#include "core/settings/ReminderLeadTime.h"
#include "support/TestMain.h"

#include <QTest>

// The lead times of reminders that the settings offer, and how each reads.
class ReminderLeadTimeTest : public QObject {
    Q_OBJECT

private slots:
    void theChoicesRunFromTheDueTimeToAnHourBefore() {
        QCOMPARE(ReminderLeadTime::choices(), (QList<qint64>{0, 5, 10, 15, 30, 60}));
    }

    void zeroReadsAtDueTimeAndTheOthersInMinutesBefore() {
        QCOMPARE(ReminderLeadTime::label(0), QStringLiteral("At due time"));
        QCOMPARE(ReminderLeadTime::label(5), QStringLiteral("5 minutes before"));
        QCOMPARE(ReminderLeadTime::label(60), QStringLiteral("60 minutes before"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ReminderLeadTimeTest)
#include "ReminderLeadTimeTest.moc"
