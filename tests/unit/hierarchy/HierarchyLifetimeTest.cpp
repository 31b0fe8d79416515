#include "core/hierarchy/HierarchyStore.h"
#include "core/hierarchy/ListContext.h"
#include "support/HierarchyTesting.h"
#include "support/TestMain.h"

#include <QTest>

using namespace HierarchyTesting;

namespace {
// Starts the task tied to `watcher` and tells when it has ended.
std::shared_ptr<bool> watched(QObject& watcher, QCoro::Task<> task) {
    auto ended = std::make_shared<bool>(false);
    startTask(&watcher, std::move(task), [ended] { *ended = true; });
    return ended;
}

} // namespace

// A store or a context deleted while its load waits for the service: the load still comes to its
// end, later, and touches nothing of what is gone (the sanitizer build checks that).
class HierarchyLifetimeTest : public QObject {
    Q_OBJECT

private slots:
    void aStoreDeletedWhileItsWorkspacesLoadEndsTheLoad() {
        FakeClient fake;
        fake.service.answer(QStringLiteral("team"), wrapped("teams", {record("a")}));
        fake.service.hold(QStringLiteral("team"));
        auto store = std::make_unique<HierarchyStore>(fake.client);
        QObject watcher;
        const auto ended = watched(watcher, store->loadWorkspaces(false));
        store.reset();
        fake.service.release(QStringLiteral("team"));
        QTRY_VERIFY(*ended);
    }

    void aStoreDeletedWhileEntriesLoadEndsTheLoad() {
        FakeClient fake;
        const QString spaces = QStringLiteral("team/w/space");
        fake.service.answer(spaces, wrapped("spaces", {record("s0")}));
        fake.service.answer(QStringLiteral("space/s0/folder"), wrapped("folders", {}));
        fake.service.answer(QStringLiteral("space/s0/list"), wrapped("lists", {record("l0")}));
        fake.service.hold(spaces);
        auto store = std::make_unique<HierarchyStore>(fake.client);
        QObject watcher;
        const auto ended = watched(watcher, store->loadEntries(QStringLiteral("w"), false));
        store.reset();
        fake.service.release(spaces);
        QTRY_VERIFY(*ended);
        // The walk went on to the space's folders and lists, and its result went nowhere.
        QCOMPARE(fake.service.paths.size(), 3);
    }

    void aContextDeletedWhileItLoadsEndsTheLoad() {
        FakeClient fake;
        const QString details = QStringLiteral("list/l1");
        fake.service.answer(details, record("l1").toUtf8());
        fake.service.hold(details);
        auto context = std::make_unique<ListContext>(entryWithSpaceStatuses());
        QObject watcher;
        const auto ended = watched(watcher, context->load(fake.client));
        QVERIFY(context->isLoading());
        context.reset();
        fake.service.release(details);
        QTRY_VERIFY(*ended);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(HierarchyLifetimeTest)
#include "HierarchyLifetimeTest.moc"
