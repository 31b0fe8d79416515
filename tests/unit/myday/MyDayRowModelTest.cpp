// The row model of the Tasks tab: rows applied with row-level signals and read through roles.
#include "core/myday/MyDayRowModel.h"
#include "support/MyDayTesting.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

using namespace MyDayTesting;

namespace {
QList<MyDayRow> rows(const QStringList& items) {
    QList<MyDayRow> rows;
    for (const QString& item : items) {
        rows.append(item.startsWith(u'#') ? MyDayRow::section(item.mid(1)) : MyDayRow::task({task(item), 0}));
    }
    return rows;
}

// A task row in the list of that id.
MyDayRow inList(const QString& id, const QString& listID) {
    NVTaskSummary listed = task(id);
    listed.list = NVTaskSummary::ListRef{listID, std::nullopt};
    return MyDayRow::task({listed, 0});
}

QList<StatusChoice> listStatuses(const MyDayRowModel& model, int row) {
    return model.data(model.index(row), MyDayRowModel::ListStatusesRole).value<QList<StatusChoice>>();
}
} // namespace

class MyDayRowModelTest : public QObject {
    Q_OBJECT

private slots:
    void aCompletedTaskLeavesAsOneRemovedRow() {
        MyDayRowModel model;
        model.setRows(rows({"#Overdue", "a", "b", "c"}));
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
        model.setRows(rows({"#Overdue", "a", "c"}));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.first().at(1).toInt(), 2);
        QCOMPARE(removed.first().at(2).toInt(), 2);
        QCOMPARE(inserted.count(), 0);
        QCOMPARE(reset.count(), 0);
        QCOMPARE(model.rows(), rows({"#Overdue", "a", "c"}));
    }

    void aChangedTaskTellsItsRowOnly() {
        MyDayRowModel model;
        model.setRows(rows({"a", "b"}));
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QList<MyDayRow> renamed = rows({"a", "b"});
        renamed[1].node.task.name = QStringLiteral("Renamed");
        model.setRows(renamed);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().at(0).toModelIndex().row(), 1);
        QCOMPARE(model.data(model.index(1), MyDayRowModel::NameRole).toString(), QStringLiteral("Renamed"));
    }

    void aReorderedMiddleIsReplaced() {
        MyDayRowModel model;
        model.setRows(rows({"a", "b", "c", "d"}));
        model.setRows(rows({"a", "c", "b", "d", "e"}));
        QCOMPARE(model.rows(), rows({"a", "c", "b", "d", "e"}));
        QCOMPARE(model.rowCount(), 5);
    }

    void rolesDescribeSectionsAndSubtasks() {
        MyDayRowModel model;
        NVTaskSummary sub = task("s", "<b>Sub</b> & more");
        sub.assignees = QList<NVUser>{user(7)};
        model.setRows({MyDayRow::section(QStringLiteral("Due today")), MyDayRow::task({sub, 1})});
        QCOMPARE(model.data(model.index(0), MyDayRowModel::KindRole).toString(), QStringLiteral("section"));
        QCOMPARE(model.data(model.index(0), MyDayRowModel::TitleRole).toString(), QStringLiteral("Due today"));
        QCOMPARE(model.data(model.index(1), MyDayRowModel::NameRole).toString(), QStringLiteral("<b>Sub</b> & more"));
        QCOMPARE(model.data(model.index(1), MyDayRowModel::DepthRole).toInt(), 1);
        QCOMPARE(model.data(model.index(1), MyDayRowModel::AssigneesRole).toStringList(), QStringList{"User 7"});
        QVERIFY(model.roleNames().values().contains("depth"));
    }

    void aStatusColourComesAsTheNameQmlReadsAndAnUnreadableOneAsNone() {
        const auto colourOf = [](const std::optional<QString>& hex) {
            NVTaskSummary coloured = task(QStringLiteral("t"));
            coloured.status = NVStatus{QStringLiteral("review"), hex, std::nullopt};
            MyDayRowModel model;
            model.setRows({MyDayRow::task({coloured, 0})});
            return model.data(model.index(0), MyDayRowModel::StatusColorRole).toString();
        };
        QCOMPARE(colourOf(QStringLiteral("#4194F6")), QStringLiteral("#4194f6"));
        QCOMPARE(colourOf(QStringLiteral("a875ff")), QStringLiteral("#a875ff"));
        QCOMPARE(colourOf(QStringLiteral("#12zz45")), QString());
        QCOMPARE(colourOf(QStringLiteral("red")), QString());
        QCOMPARE(colourOf(QString()), QString());
        QCOMPARE(colourOf(std::nullopt), QString());
    }

    void theStatusesOfAListReachItsRowsAloneAsTheyArrive() {
        MyDayRowModel model;
        model.setRows({MyDayRow::section(QStringLiteral("Later")), inList(QStringLiteral("a"), QStringLiteral("L1")),
                       inList(QStringLiteral("b"), QStringLiteral("L2")),
                       inList(QStringLiteral("c"), QStringLiteral("L1"))});
        QVERIFY(model.roleNames().values().contains("listStatuses"));
        QCOMPARE(listStatuses(model, 1), QList<StatusChoice>{});

        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        const QList<NVStatus> statuses{{QStringLiteral("to do"), QStringLiteral("#D3D3D3"), std::nullopt},
                                       {QStringLiteral("<b>done</b>"), QStringLiteral("red"), std::nullopt}};
        model.setListStatuses({{QStringLiteral("L1"), statuses}});
        QCOMPARE(changed.count(), 2);
        for (int signal = 0; signal < 2; ++signal) {
            QCOMPARE(changed.at(signal).at(0).toModelIndex().row(), signal == 0 ? 1 : 3);
            QCOMPARE(changed.at(signal).at(2).value<QList<int>>(), QList<int>{MyDayRowModel::ListStatusesRole});
        }
        const QList<StatusChoice> expected{{QStringLiteral("to do"), QStringLiteral("#d3d3d3")},
                                           {QStringLiteral("<b>done</b>"), QString()}};
        QCOMPARE(listStatuses(model, 1), expected);
        QCOMPARE(listStatuses(model, 3), expected);
        QCOMPARE(listStatuses(model, 2), QList<StatusChoice>{});
        QCOMPARE(listStatuses(model, 0), QList<StatusChoice>{});

        // The same statuses again change nothing; those of the other list change its row.
        changed.clear();
        model.setListStatuses({{QStringLiteral("L1"), statuses}, {QStringLiteral("L2"), statuses.mid(0, 1)}});
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().at(0).toModelIndex().row(), 2);
        QCOMPARE(listStatuses(model, 2), expected.mid(0, 1));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(MyDayRowModelTest)
#include "MyDayRowModelTest.moc"
