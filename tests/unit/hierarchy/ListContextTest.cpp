#include "core/hierarchy/ListContext.h"
#include "support/HierarchyTesting.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

using namespace HierarchyTesting;

namespace {
const QString detailsPath = QStringLiteral("list/l1");
const QString membersPath = QStringLiteral("list/l1/member");
const QString tagsPath = QStringLiteral("space/s1/tag");
const QString fieldsPath = QStringLiteral("list/l1/field");
const QByteArray broken = R"({"err":"Broken","ECODE":"X"})";

const QList<NVStatus> spaceStatuses{{QStringLiteral("space open"), std::nullopt, std::nullopt}};

void answerAll(FakeService& service) {
    service.answer(detailsPath, record("l1", QStringLiteral(R"("statuses":[%1])").arg(status("list open"))).toUtf8());
    service.answer(membersPath, R"({"members":[{"id":7,"username":"Ada"}]})");
    service.answer(tagsPath, R"({"tags":[{"name":"urgent"}]})");
    service.answer(fieldsPath, R"({"fields":[{"id":"f1","name":"Size","type":"number"},)"
                               R"({"id":"f2","name":"Sum","type":"formula"}]})");
}
} // namespace

class ListContextTest : public QObject {
    Q_OBJECT

private slots:
    void aNewContextStartsWithTheSpaceStatuses() {
        const ListContext context(entryWithSpaceStatuses(spaceStatuses));
        QCOMPARE(context.statuses(), spaceStatuses);
        QVERIFY(context.members().isEmpty() && context.tags().isEmpty() && context.fields().isEmpty());
        QVERIFY(!context.isLoading());
        QCOMPARE(context.error(), std::nullopt);
    }

    void fourReadsGoOutAtOnceInOrderAndFillTheContext() {
        FakeClient fake;
        answerAll(fake.service);
        ListContext context(entryWithSpaceStatuses(spaceStatuses));
        runTask(context.load(fake.client));
        QCOMPARE(fake.service.paths, QStringList({detailsPath, membersPath, tagsPath, fieldsPath}));
        QCOMPARE(fake.service.maxInFlight, 4);
        QCOMPARE(context.statuses().value(0).status, QStringLiteral("list open"));
        QCOMPARE(context.members().value(0).id, 7);
        QCOMPARE(context.tags().value(0).name, QStringLiteral("urgent"));
        // The formula field is not one the composer can edit.
        QCOMPARE(context.fields().size(), 1);
        QCOMPARE(context.fields()[0].id, QStringLiteral("f1"));
        QCOMPARE(context.error(), std::nullopt);
        QVERIFY(!context.isLoading());
    }

    void detailsWithoutStatusesFallBackToTheSpaceStatuses() {
        FakeClient fake;
        answerAll(fake.service);
        fake.service.answer(detailsPath, record("l1").toUtf8());
        ListContext context(entryWithSpaceStatuses(spaceStatuses));
        runTask(context.load(fake.client));
        QCOMPARE(context.statuses(), spaceStatuses);
    }

    void detailsWithEmptyStatusesFallBackToTheSpaceStatuses() {
        FakeClient fake;
        answerAll(fake.service);
        fake.service.answer(detailsPath, record("l1", R"("statuses":[])").toUtf8());
        ListContext context(entryWithSpaceStatuses(spaceStatuses));
        runTask(context.load(fake.client));
        QCOMPARE(context.statuses(), spaceStatuses);
    }

    void onlyTheTagsReadSucceedingSetsTheErrorAndFillsTheTags() {
        FakeClient fake;
        fake.service.answer(detailsPath, 500, broken);
        fake.service.answer(membersPath, 500, broken);
        fake.service.answer(tagsPath, R"({"tags":[{"name":"urgent"}]})");
        fake.service.answer(fieldsPath, 500, broken);
        ListContext context(entryWithSpaceStatuses({}));
        runTask(context.load(fake.client));
        QCOMPARE(context.error(), std::optional(QStringLiteral("Couldn't load list details. Check your connection.")));
        QCOMPARE(context.tags().size(), 1);
    }

    void onlyTheTagsReadFailingSetsNoErrorAndLeavesTagsEmpty() {
        FakeClient fake;
        answerAll(fake.service);
        fake.service.answer(tagsPath, 500, broken);
        ListContext context(entryWithSpaceStatuses({}));
        runTask(context.load(fake.client));
        QCOMPARE(context.error(), std::nullopt);
        QVERIFY(context.tags().isEmpty());
        QCOMPARE(context.members().size(), 1);
    }

    void bothSourcesOfStatusesEmptyLeaveTheStatusesAsTheyWere() {
        FakeClient fake;
        answerAll(fake.service);
        ListContext context(entryWithSpaceStatuses({}));
        runTask(context.load(fake.client));
        const QList<NVStatus> loaded = context.statuses();
        QCOMPARE(loaded.size(), 1);
        QCOMPARE(loaded[0].status, QStringLiteral("list open"));
        // The second time the list has no statuses either, like its space.
        fake.service.answer(detailsPath, record("l1", R"("statuses":[])").toUtf8());
        QSignalSpy changes(&context, &ListContext::statusesChanged);
        runTask(context.load(fake.client));
        QCOMPARE(context.statuses(), loaded);
        QCOMPARE(changes.count(), 0);
        QCOMPARE(context.error(), std::nullopt);
    }

    void aReloadThatFailsWipesWhatWasLoaded() {
        FakeClient fake;
        answerAll(fake.service);
        ListContext context(entryWithSpaceStatuses(spaceStatuses));
        runTask(context.load(fake.client));
        QCOMPARE(context.members().size(), 1);
        for (const QString& path : {detailsPath, membersPath, tagsPath, fieldsPath}) {
            fake.service.answer(path, 500, broken);
        }
        runTask(context.load(fake.client));
        QVERIFY(context.members().isEmpty() && context.tags().isEmpty() && context.fields().isEmpty());
        QCOMPARE(context.statuses(), spaceStatuses);
        QVERIFY(context.error());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ListContextTest)
#include "ListContextTest.moc"
