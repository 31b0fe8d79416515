#include "desktop/compose/FieldChipsViewModel.h"
#include "support/AppStateFixture.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
// The label of the chip `chipID` in the row, or empty.
QString chipLabel(FieldChipListModel& chips, const QString& chipID) {
    for (int row = 0; row < chips.rowCount(); ++row) {
        const QModelIndex index = chips.index(row);
        if (chips.data(index, FieldChipListModel::ChipIDRole).toString() == chipID) {
            return chips.data(index, FieldChipListModel::LabelRole).toString();
        }
    }
    return {};
}
} // namespace

// The due date chip reads the day relative to today, and today changes at midnight without any
// change of the draft.
class DueDateChipMidnightTest : public QObject {
    Q_OBJECT

private slots:
    void tomorrowReadsTodayOnceMidnightHasPassed() {
        AppStateFixture fixture;
        ManualWallClock& time = fixture.wallClock();
        const QDate day(2026, 6, 17);
        time.jumpTo(QDateTime(day, QTime(23, 30), Qt::LocalTime));
        fixture.useWallClockTime();
        AppState& app = fixture.start();
        FieldChipsViewModel chips(app, time.clock());
        const QString dueDate = QStringLiteral("default-dueDate");

        chips.dueDate()->chooseTomorrowAtNine();
        QVERIFY2(chipLabel(*chips.shownChips(), dueDate).startsWith(QStringLiteral("Tomorrow")),
                 qPrintable(chipLabel(*chips.shownChips(), dueDate)));
        time.advanceTo(QDateTime(day.addDays(1), QTime(0, 0), Qt::LocalTime));
        QVERIFY2(chipLabel(*chips.shownChips(), dueDate).startsWith(QStringLiteral("Today")),
                 qPrintable(chipLabel(*chips.shownChips(), dueDate)));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(DueDateChipMidnightTest)
#include "DueDateChipMidnightTest.moc"
