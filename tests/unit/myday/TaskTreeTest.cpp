// The subtask tree: roots, children in list order, depth, and lists the service should never send.
#include "core/myday/TaskTree.h"
#include "support/MyDayTesting.h"
#include "support/TestMain.h"

#include <QTest>

using namespace MyDayTesting;

namespace {
NVTaskSummary child(const QString& id, const QString& parent) {
    NVTaskSummary subtask = task(id);
    subtask.parentTaskID = parent;
    return subtask;
}

QStringList rowsWithDepth(const TaskTreeList& tree) {
    QStringList rows;
    for (const TaskTreeNode& node : tree.rows()) {
        rows.append(QString(node.depth, u'>') + node.task.id);
    }
    return rows;
}
} // namespace

class TaskTreeTest : public QObject {
    Q_OBJECT

private slots:
    void aSubtaskWhoseParentIsListedAppearsOnlyUnderIt() {
        const TaskTreeList tree({child("c1", "p"), task("p"), child("c2", "p"), child("g", "c1"), task("q")});
        QCOMPARE(ids(tree.rootTasks()), (QStringList{"p", "q"}));
        QCOMPARE(rowsWithDepth(tree), (QStringList{"p", ">c1", ">>g", ">c2", "q"}));
    }

    void aSubtaskOfAParentOnAnotherPageStandsAtTheTop() {
        const TaskTreeList tree({task("a"), child("orphan", "elsewhere")});
        QCOMPARE(ids(tree.rootTasks()), (QStringList{"a", "orphan"}));
        QCOMPARE(rowsWithDepth(tree), (QStringList{"a", "orphan"}));
    }

    void childrenOfANodeAreOneLevelDeeperInListOrder() {
        const TaskTreeList tree({task("p"), child("b", "p"), child("a", "p")});
        const QList<TaskTreeNode> children = tree.children({task("p"), 2});
        QCOMPARE(children.size(), 2);
        QCOMPARE(children[0].task.id, QStringLiteral("b"));
        QCOMPARE(children[1].depth, 3);
    }

    void aCycleOrARepeatedIdNeitherLoopsNorDoublesARow() {
        const TaskTreeList cycle({child("a", "b"), child("b", "a")});
        QCOMPARE(rowsWithDepth(cycle), QStringList());
        const TaskTreeList repeated({task("x"), child("x", "x"), child("y", "x")});
        QCOMPARE(rowsWithDepth(repeated), (QStringList{"x", ">x", ">y"}));
        const TaskTreeList around({task("r"), child("a", "r"), child("r", "a")});
        QCOMPARE(rowsWithDepth(around), (QStringList{"r", ">a", ">>r"}));
        const TaskTreeList self({child("s", "s")});
        QCOMPARE(rowsWithDepth(self), QStringList());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TaskTreeTest)
#include "TaskTreeTest.moc"
