#include "desktop/compose/AttachmentListModel.h"
#include "support/TestMain.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

// The attachment list tells its views each change by rows: inserted, removed or changed, never a
// reset of the whole list.
class AttachmentListModelTest : public QObject {
    Q_OBJECT

    static StagedAttachment attachment(const QString& filename) {
        return {QUuid::createUuid(), QUrl::fromLocalFile(QStringLiteral("/nowhere/") + filename), filename};
    }

    static QString filenameAt(const AttachmentListModel& model, int row) {
        return model.data(model.index(row), AttachmentListModel::FilenameRole).toString();
    }

    // The first and last row of each rowsInserted or rowsRemoved the spy saw.
    static QList<QPair<int, int>> ranges(const QSignalSpy& spy) {
        QList<QPair<int, int>> seen;
        for (const QList<QVariant>& arguments : spy) {
            seen.append({arguments.at(1).toInt(), arguments.at(2).toInt()});
        }
        return seen;
    }

    // The first and last row of each dataChanged the spy saw.
    static QList<QPair<int, int>> changedRanges(const QSignalSpy& spy) {
        QList<QPair<int, int>> seen;
        for (const QList<QVariant>& arguments : spy) {
            seen.append({arguments.at(0).value<QModelIndex>().row(), arguments.at(1).value<QModelIndex>().row()});
        }
        return seen;
    }

    struct Spies {
        explicit Spies(AttachmentListModel& model)
            : inserted(&model, &QAbstractItemModel::rowsInserted)
            , removed(&model, &QAbstractItemModel::rowsRemoved)
            , changed(&model, &QAbstractItemModel::dataChanged)
            , reset(&model, &QAbstractItemModel::modelReset)
            , count(&model, &AttachmentListModel::countChanged) {}

        QSignalSpy inserted;
        QSignalSpy removed;
        QSignalSpy changed;
        QSignalSpy reset;
        QSignalSpy count;
    };

private slots:
    void appendedFilesAreInsertedAtTheEnd() {
        TaskDraft draft;
        AttachmentListModel model(draft);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        Spies spies(model);
        model.append({attachment(QStringLiteral("a.txt")), attachment(QStringLiteral("b.txt"))});
        model.append({attachment(QStringLiteral("c.txt"))});
        QCOMPARE(ranges(spies.inserted), (QList<QPair<int, int>>{{0, 1}, {2, 2}}));
        QCOMPARE(model.count(), 3);
        QCOMPARE(filenameAt(model, 2), QStringLiteral("c.txt"));
        QCOMPARE(spies.count.count(), 2);
        QCOMPARE(spies.removed.count(), 0);
        QCOMPARE(spies.changed.count(), 0);
        QCOMPARE(spies.reset.count(), 0);
    }

    void removingARowRemovesThatRowOnly() {
        TaskDraft draft;
        draft.setAttachments({attachment(QStringLiteral("a.txt")), attachment(QStringLiteral("b.txt")),
                              attachment(QStringLiteral("c.txt"))});
        AttachmentListModel model(draft);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        Spies spies(model);
        model.remove(1);
        QCOMPARE(ranges(spies.removed), (QList<QPair<int, int>>{{1, 1}}));
        QCOMPARE(model.count(), 2);
        QCOMPARE(filenameAt(model, 0), QStringLiteral("a.txt"));
        QCOMPARE(filenameAt(model, 1), QStringLiteral("c.txt"));
        QCOMPARE(spies.count.count(), 1);
        QCOMPARE(spies.inserted.count(), 0);
        QCOMPARE(spies.reset.count(), 0);
    }

    void aRowOutOfRangeRemovesNothing() {
        TaskDraft draft;
        draft.setAttachments({attachment(QStringLiteral("a.txt"))});
        AttachmentListModel model(draft);
        Spies spies(model);
        model.remove(1);
        model.remove(-1);
        QCOMPARE(model.count(), 1);
        QCOMPARE(spies.removed.count(), 0);
    }

    void aNewListReplacesOnlyTheRowsBetweenTheSharedEnds() {
        const StagedAttachment first = attachment(QStringLiteral("a.txt"));
        const StagedAttachment last = attachment(QStringLiteral("d.txt"));
        TaskDraft draft;
        draft.setAttachments({first, attachment(QStringLiteral("b.txt")), attachment(QStringLiteral("c.txt")), last});
        AttachmentListModel model(draft);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        Spies spies(model);
        draft.setAttachments({first, attachment(QStringLiteral("x.txt")), last});
        QCOMPARE(ranges(spies.removed), (QList<QPair<int, int>>{{1, 2}}));
        QCOMPARE(ranges(spies.inserted), (QList<QPair<int, int>>{{1, 1}}));
        QCOMPARE(model.count(), 3);
        QCOMPARE(filenameAt(model, 0), QStringLiteral("a.txt"));
        QCOMPARE(filenameAt(model, 1), QStringLiteral("x.txt"));
        QCOMPARE(filenameAt(model, 2), QStringLiteral("d.txt"));
        QCOMPARE(spies.changed.count(), 0);
        QCOMPARE(spies.reset.count(), 0);
    }

    void aRowWhoseRecordChangesIsReportedChanged() {
        const StagedAttachment first = attachment(QStringLiteral("a.txt"));
        StagedAttachment second = attachment(QStringLiteral("b.txt"));
        const StagedAttachment third = attachment(QStringLiteral("c.txt"));
        TaskDraft draft;
        draft.setAttachments({first, second, third});
        AttachmentListModel model(draft);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        Spies spies(model);
        second.filename = QStringLiteral("renamed.txt");
        draft.setAttachments({first, second, third});
        QCOMPARE(changedRanges(spies.changed), (QList<QPair<int, int>>{{1, 1}}));
        QCOMPARE(filenameAt(model, 1), QStringLiteral("renamed.txt"));
        QCOMPARE(spies.inserted.count(), 0);
        QCOMPARE(spies.removed.count(), 0);
        QCOMPARE(spies.count.count(), 0);
        QCOMPARE(spies.reset.count(), 0);
    }

    void resettingTheDraftRemovesEveryRow() {
        TaskDraft draft;
        draft.setAttachments({attachment(QStringLiteral("a.txt")), attachment(QStringLiteral("b.txt"))});
        AttachmentListModel model(draft);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        Spies spies(model);
        draft.reset(TaskDraft::initialReminderLeadMinutes);
        QCOMPARE(ranges(spies.removed), (QList<QPair<int, int>>{{0, 1}}));
        QCOMPARE(model.count(), 0);
        QCOMPARE(spies.count.count(), 1);
        QCOMPARE(spies.reset.count(), 0);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AttachmentListModelTest)
#include "AttachmentListModelTest.moc"
