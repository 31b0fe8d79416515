#include "core/compose/Priorities.h"
#include "core/compose/ReminderLeads.h"
#include "support/TestMain.h"

#include <QTest>

class ComposerChoicesTest : public QObject {
    Q_OBJECT

private slots:
    void prioritiesAreUrgentHighNormalLowNumberedOneToFour() {
        QStringList names;
        QList<int> values;
        for (const Priority& priority : Priorities::all()) {
            names.append(priority.name);
            values.append(priority.value);
        }
        QCOMPARE(names, (QStringList{QStringLiteral("Urgent"), QStringLiteral("High"), QStringLiteral("Normal"),
                                     QStringLiteral("Low")}));
        QCOMPARE(values, (QList<int>{1, 2, 3, 4}));
    }

    void prioritiesAreRedOrangeBlueAndGrey() {
        const QList<Priority> priorities = Priorities::all();
        const NorvaneColor urgent = priorities.at(0).color;
        QVERIFY(urgent.red > 0.9 && urgent.green < 0.3 && urgent.blue < 0.3);
        const NorvaneColor high = priorities.at(1).color;
        QVERIFY(high.red > 0.9 && high.green > 0.4 && high.green < 0.7 && high.blue < 0.1);
        const NorvaneColor normal = priorities.at(2).color;
        QVERIFY(normal.blue > 0.9 && normal.red < 0.1);
        const NorvaneColor low = priorities.at(3).color;
        QVERIFY(qAbs(low.red - low.green) < 0.05 && qAbs(low.green - low.blue) < 0.05);
    }

    void aPriorityIsFoundByItsNumber() {
        QCOMPARE(Priorities::withValue(2)->name, QStringLiteral("High"));
        QCOMPARE(Priorities::withValue(7), std::nullopt);
        QCOMPARE(Priorities::withValue(std::nullopt), std::nullopt);
    }

    void reminderLeadsAreZeroToAnHour() { QCOMPARE(ReminderLeads::choices(), (QList<qint64>{0, 5, 10, 15, 30, 60})); }

    void reminderLeadLabelsSayAtDueTimeOrMinutesBefore() {
        QCOMPARE(ReminderLeads::label(0), QStringLiteral("At due time"));
        QCOMPARE(ReminderLeads::label(5), QStringLiteral("5 min before"));
        QCOMPARE(ReminderLeads::label(60), QStringLiteral("60 min before"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ComposerChoicesTest)
#include "ComposerChoicesTest.moc"
