// Searching the loaded tasks: tokens, folding of case and accents, and the five fields searched.
#include "core/myday/TaskSearch.h"
#include "support/MyDayTesting.h"
#include "support/TestMain.h"

#include <QTest>

using namespace MyDayTesting;

class TaskSearchTest : public QObject {
    Q_OBJECT

    static NVTaskSummary described() {
        NVTaskSummary found = task(QStringLiteral("86a2xyz"), QStringLiteral("resume the cafe review"));
        found.list = NVTaskSummary::ListRef{QStringLiteral("l1"), QStringLiteral("Sprint Backlog")};
        found.status = NVStatus{QStringLiteral("in progress"), std::nullopt, std::nullopt};
        found.assignees = QList<NVUser>{user(7, std::nullopt, QStringLiteral("chidi@northwind.example")),
                                        user(8, QStringLiteral("Ada Okafor"))};
        return found;
    }

    static bool matches(const QString& query) {
        return TaskSearch::matchesSearchQuery(described(), TaskSearch::normalizedTokens(query));
    }

private slots:
    void tokensAreTrimmedFoldedAndSplitAtWhiteSpace() {
        QCOMPARE(TaskSearch::normalizedTokens(QStringLiteral("  Café\tRÉSUMÉ \n x  ")),
                 (QStringList{"cafe", "resume", "x"}));
        QCOMPARE(TaskSearch::normalizedTokens(QStringLiteral(" \n\t ")), QStringList());
    }

    void twoWordsInCapitalsWithAccentsMatchInAnyOrder() { QVERIFY(matches(QStringLiteral("CAFÉ Résumé"))); }

    void theListTheStatusAndPartOfAnEmailMatch() {
        QVERIFY(matches(QStringLiteral("backlog")));
        QVERIFY(matches(QStringLiteral("progress")));
        QVERIFY(matches(QStringLiteral("chidi@north")));
        QVERIFY(matches(QStringLiteral("okafor")));
        QVERIFY(matches(QStringLiteral("2XY")));
    }

    void everyTokenMustMatch() { QVERIFY(!matches(QStringLiteral("cafe invoice"))); }

    void anAssigneeWithoutNameOrEmailIsUserAndTheID() {
        NVTaskSummary nameless = task(QStringLiteral("1"));
        nameless.assignees = QList<NVUser>{user(4810005)};
        QVERIFY(TaskSearch::matchesSearchQuery(nameless, TaskSearch::normalizedTokens(QStringLiteral("user 4810005"))));
    }

    void aTaskWithoutListStatusOrAssigneesStillMatchesByName() {
        QVERIFY(TaskSearch::matchesSearchQuery(task(QStringLiteral("1"), QStringLiteral("Plain")),
                                               TaskSearch::normalizedTokens(QStringLiteral("plain"))));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TaskSearchTest)
#include "TaskSearchTest.moc"
