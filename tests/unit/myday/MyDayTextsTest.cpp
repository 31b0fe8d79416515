// Every text My Day shows goes through translation with its exact English as the source text.
#include "core/myday/MyDayStore.h"
#include "core/myday/QuickTimes.h"
#include "core/myday/TasksTabState.h"
#include "support/HierarchyTesting.h"
#include "support/MyDayTesting.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QTest>
#include <QTranslator>

using namespace HierarchyTesting;
using namespace MyDayTesting;

namespace {
// Marks every text it is asked for.
class MarkingTranslator : public QTranslator {
public:
    QString translate(const char*, const char* sourceText, const char*, int) const override {
        return u'«' + QString::fromUtf8(sourceText) + u'»';
    }
    bool isEmpty() const override { return false; }
};
} // namespace

class MyDayTextsTest : public QObject {
    Q_OBJECT

    MarkingTranslator m_translator;

private slots:
    void initTestCase() { QVERIFY(QCoreApplication::installTranslator(&m_translator)); }
    void cleanupTestCase() { QCoreApplication::removeTranslator(&m_translator); }

    void theStoresTextsAreTranslated() {
        QCOMPARE(MyDayStore::loadingTasksText(), QStringLiteral("«Loading tasks…»"));
        QCOMPARE(MyDayStore::noDoneStatusText(), QStringLiteral("«Couldn't resolve a done status for this list.»"));
    }

    void theLoadingMessageOfAFurtherPageIsTranslatedWhole() {
        FakeClient fake;
        fake.service.answer(QStringLiteral("team/7/task"), page(100, false));
        fake.service.answerNext(QStringLiteral("team/7/task"), page(0, true));
        MyDayStore store(fake.client);
        runTask(store.refresh(QStringLiteral("7"), {}));
        QCOMPARE(store.loadingMessage(), QStringLiteral("««Loading tasks»… (page 2)»"));
    }

    void theSectionsAndQuickTimesAreTranslated() {
        QCOMPARE(TasksTabState::overdueTitle(), QStringLiteral("«Overdue»"));
        QCOMPARE(TasksTabState::dueTodayTitle(), QStringLiteral("«Due today»"));
        QCOMPARE(TasksTabState::laterTitle(), QStringLiteral("«Later»"));
        QCOMPARE(QuickTimes::label(QuickTimes::ReminderTime::tomorrowMorning), QStringLiteral("«Tomorrow morning»"));
        QCOMPARE(QuickTimes::label(QuickTimes::DueDateMove::thisEvening), QStringLiteral("«This evening»"));
        QCOMPARE(QuickTimes::label(QuickTimes::DueDateMove::nextMonday), QStringLiteral("«Next Monday»"));
        QCOMPARE(QuickTimes::moveDueDateTitle(), QStringLiteral("«Move due date…»"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(MyDayTextsTest)
#include "MyDayTextsTest.moc"
