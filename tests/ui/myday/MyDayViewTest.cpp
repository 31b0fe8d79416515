#include "support/KeyboardDriver.h"
#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxFault.h"
#include "support/SandboxProcess.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QQuickItem>
#include <QTest>
#include <QUrlQuery>

// A person reads and works through their open tasks in the popover's Tasks tab, by keyboard and
// mouse, against norvane-sandbox's demo: the first demo user's 250 open tasks in Northwind.
class MyDayViewTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;

    MyDayViewModel& myDay() { return *m_fixture->myDay; }
    const QList<MyDayRow>& rows() { return myDay().rowModel().rows(); }
    PopoverWindow& popover() { return m_fixture->popover; }

    // Items of the page and of its open menus, which sit in the window's overlay.
    QQuickItem* item(const QString& objectName) { return QuickItems::visualChild(popover().contentItem(), objectName); }

    QString textOf(const QString& objectName) { return QuickItems::plainText(item(objectName)); }

    void click(QQuickItem* target) {
        QVERIFY(target);
        QTest::mouseClick(&popover(), Qt::LeftButton, {},
                          target->mapToScene(QPointF(target->width() / 2, target->height() / 2)).toPoint());
    }

    void click(const QString& objectName) {
        QQuickItem* target = nullptr;
        QTRY_VERIFY2((target = item(objectName)) && target->isVisible() && target->isEnabled(), qPrintable(objectName));
        click(target);
    }

    void key(Qt::Key key) { QTest::keyClick(&popover(), key); }

    void type(const QString& text) {
        for (const QChar character : text) {
            QTest::sendKeyEvent(QTest::Click, &popover(), Qt::Key_unknown, QString(character), Qt::NoModifier);
        }
    }

    // The task searches the sandbox answered since the requests were last cleared, as their queries.
    QList<QUrlQuery> taskSearches() {
        QList<QUrlQuery> found;
        for (const QJsonValue& request : m_sandbox.requests()) {
            const QString path = request[QStringLiteral("path")].toString();
            if (request[QStringLiteral("method")] == QStringLiteral("GET") &&
                path.startsWith(QStringLiteral("/api/v2/team/")) && path.endsWith(QStringLiteral("/task"))) {
                QUrlQuery query;
                for (const QJsonValue item : request[QStringLiteral("query")].toArray()) {
                    query.addQueryItem(item[0].toString(), item[1].toString());
                }
                found.append(query);
            }
        }
        return found;
    }

    QStringList sectionTitles() {
        QStringList titles;
        for (const MyDayRow& row : rows()) {
            if (row.kind == MyDayRow::Kind::section) {
                titles.append(row.title);
            }
        }
        return titles;
    }

    int rowOf(const QString& taskID) {
        for (qsizetype index = 0; index < rows().size(); ++index) {
            if (rows()[index].kind == MyDayRow::Kind::task && rows()[index].node.task.id == taskID) {
                return static_cast<int>(index);
            }
        }
        return -1;
    }

    // The delegate of the row at `index`, scrolled into view unless `scrolled` is false; null when
    // it has none.
    QQuickItem* rowView(int index, bool scrolled = true) {
        QQuickItem* list = item(QStringLiteral("taskList"));
        if (!list) {
            return nullptr;
        }
        if (scrolled) {
            QMetaObject::invokeMethod(list, "positionViewAtIndex", Q_ARG(int, index), Q_ARG(int, 0));
        }
        QQuickItem* found = nullptr;
        QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, found), Q_ARG(int, index));
        return found;
    }

    // The row at the list's content position `y`, or -1 where no item is.
    static int indexAt(QQuickItem* list, qreal y) {
        int index = -1;
        QMetaObject::invokeMethod(list, "indexAt", Q_RETURN_ARG(int, index), Q_ARG(qreal, list->width() / 2),
                                  Q_ARG(qreal, y + 1));
        return index;
    }

    const NVTaskSummary* taskOf(const QString& taskID) {
        const int row = rowOf(taskID);
        return row >= 0 ? &rows()[row].node.task : nullptr;
    }

    // The statuses of the task's list as its row hands them to the view; empty until known.
    QList<StatusChoice> statusesOf(const QString& taskID) {
        const MyDayRowModel& model = myDay().rowModel();
        return model.data(model.index(rowOf(taskID)), MyDayRowModel::ListStatusesRole).value<QList<StatusChoice>>();
    }

    // The labels of a menu's entries, in order.
    static QStringList entryLabels(QObject* menu) {
        QStringList labels;
        for (int index = 0; index < menu->property("count").toInt(); ++index) {
            QQuickItem* entry = nullptr;
            QMetaObject::invokeMethod(menu, "itemAt", Q_RETURN_ARG(QQuickItem*, entry), Q_ARG(int, index));
            labels.append(entry ? entry->property("label").toString() : QString());
        }
        return labels;
    }

    // What the first request that changed the task sent; empty while there is none.
    QJsonObject sentChange(const QString& taskID) {
        for (const QJsonValue& request : m_sandbox.requests()) {
            if (request[QStringLiteral("method")] == QStringLiteral("PUT") &&
                request[QStringLiteral("path")] == QStringLiteral("/api/v2/task/") + taskID) {
                return request[QStringLiteral("json")].toObject();
            }
        }
        return {};
    }

    // The search answers with no tasks, however often it is asked.
    void answerNoTasks() {
        SandboxFault fault = SandboxFault::answer(QStringLiteral("/api/v2/team/*/task"), 200, 100);
        fault.bodyText = QStringLiteral(R"({"tasks":[],"last_page":true})");
        QVERIFY(m_sandbox.addFault(fault.forMethod(QStringLiteral("GET"))));
    }

    void showTasksTab() {
        m_fixture->tabs->setActiveTab(TabPickerViewModel::Tasks);
        QTRY_VERIFY(item(QStringLiteral("taskSearch")));
    }

    void waitForRows() {
        QTRY_VERIFY_WITH_TIMEOUT(myDay().content() == MyDayViewModel::Rows && !myDay().isLoading(), 15000);
    }

    // The keyboard on the list's first task, its action bar opened with Return.
    void openFirstRowByKeyboard() {
        click(QStringLiteral("taskSearch"));
        QTRY_VERIFY(item(QStringLiteral("taskSearch"))->hasActiveFocus());
        key(Qt::Key_Down);
        QTRY_VERIFY(item(QStringLiteral("taskList"))->hasActiveFocus());
        key(Qt::Key_Return);
        QTRY_VERIFY(item(QStringLiteral("copyTaskLink")) && item(QStringLiteral("copyTaskLink"))->hasActiveFocus());
    }

private slots:
    void initTestCase() { QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = PopoverFixture::signedInAgainst(m_sandbox, SandboxDemo::supportListID);
        QVERIFY(m_fixture);
        QVERIFY(QTest::qWaitForWindowActive(&popover()));
    }

    void cleanup() { m_fixture.reset(); }

    void theTabPickerSwitchesToTasksByKeyboardAndBack() {
        QQuickItem* create = item(QStringLiteral("createTab"));
        QVERIFY(create);
        create->forceActiveFocus(Qt::TabFocusReason);
        key(Qt::Key_Right);
        QTRY_COMPARE(m_fixture->app->activeTab(), PopoverTab::myDay);
        QTRY_VERIFY(item(QStringLiteral("taskSearch")));
        QVERIFY(!item(QStringLiteral("submitButton")));
        item(QStringLiteral("tasksTab"))->forceActiveFocus(Qt::TabFocusReason);
        key(Qt::Key_Left);
        QTRY_COMPARE(m_fixture->app->activeTab(), PopoverTab::compose);
        QTRY_VERIFY(!item(QStringLiteral("taskSearch")));
    }

    void theTasksComeInTheirThreeSectionsWithSubtasksIndentedUnderTheirParents() {
        showTasksTab();
        waitForRows();
        QCOMPARE(sectionTitles(),
                 (QStringList{QStringLiteral("Overdue"), QStringLiteral("Due today"), QStringLiteral("Later")}));
        QTRY_COMPARE(QuickItems::plainText(QuickItems::visualChild(rowView(0), QStringLiteral("sectionTitle"))),
                     QStringLiteral("Overdue"));
        // Each level of the demo's chains is due in another section, so a chain nests when the
        // search for its list shows the tasks ungrouped.
        const QList<NVTaskSummary>& tasks = myDay().state().store().tasks();
        const auto byID = [&tasks](const std::optional<QString>& id) -> const NVTaskSummary* {
            for (const NVTaskSummary& task : tasks) {
                if (id && task.id == *id) {
                    return &task;
                }
            }
            return nullptr;
        };
        const NVTaskSummary* leaf = nullptr;
        for (const NVTaskSummary& task : tasks) {
            const NVTaskSummary* parent = byID(task.parentTaskID);
            if (parent && byID(parent->parentTaskID)) {
                leaf = &task;
                break;
            }
        }
        QVERIFY2(leaf && leaf->list && leaf->list->name, "the demo has subtasks two levels deep");
        const QString leafID = leaf->id;
        myDay().setSearchText(*leaf->list->name);
        QTRY_VERIFY(sectionTitles().isEmpty() && rowOf(leafID) > 0);
        const int deepest = rowOf(leafID);
        QCOMPARE(rows()[deepest].node.depth, 2);
        // A subtask's parent stands right above it, one level up.
        QCOMPARE(rows()[deepest - 1].node.depth, 1);
        QCOMPARE(rows()[deepest].node.task.parentTaskID, std::optional(rows()[deepest - 1].node.task.id));
        const int top = deepest - 2;
        QCOMPARE(rows()[top].node.depth, 0);

        // The list lays its rows out again after the search and may make their views anew, so each
        // look asks for the row's view afresh; none yet reads as not there.
        const auto child = [this](int row, const QString& name) -> QQuickItem* {
            QQuickItem* view = rowView(row, false);
            return view ? view->findChild<QQuickItem*>(name) : nullptr;
        };
        QVERIFY(rowView(top));
        QTRY_VERIFY(child(top, QStringLiteral("subtaskMark")) &&
                    !child(top, QStringLiteral("subtaskMark"))->isVisible());
        QTRY_VERIFY(child(deepest, QStringLiteral("subtaskMark")) &&
                    child(deepest, QStringLiteral("subtaskMark"))->isVisible());
        // The names stand where the depth puts them once the layout is done.
        const auto nameX = [&child](int row) {
            QQuickItem* name = child(row, QStringLiteral("taskName"));
            return name ? name->mapToScene({0, 0}).x() : -1.0;
        };
        QTRY_VERIFY2(nameX(top) >= 0 && nameX(deepest) >= nameX(top) + 2 * 16,
                     qPrintable(QStringLiteral("%1 against %2").arg(nameX(deepest)).arg(nameX(top))));
    }

    void aSearchShowsItsMatchesUngroupedAndAsksTheServiceNothing() {
        showTasksTab();
        waitForRows();
        QVERIFY(m_sandbox.clearRequests());
        click(QStringLiteral("taskSearch"));
        type(QStringLiteral("R&D budget"));
        QTRY_COMPARE(myDay().searchText(), QStringLiteral("R&D budget"));
        QTRY_COMPARE(rows().size(), 1);
        QCOMPARE(rows().first().node.task.name, QStringLiteral("R&D budget & <Q3> review"));
        QCOMPARE(sectionTitles(), QStringList());
        QTest::qWait(200);
        QCOMPARE(taskSearches().size(), 0);

        click(QStringLiteral("clearSearch"));
        QTRY_COMPARE(myDay().searchText(), QString());
        QTRY_COMPARE(sectionTitles().size(), 3);
        QCOMPARE(item(QStringLiteral("taskSearch"))->property("text").toString(), QString());
    }

    void aSearchWithoutMatchesSaysSoWithTheHint() {
        showTasksTab();
        waitForRows();
        click(QStringLiteral("taskSearch"));
        type(QStringLiteral("zebra quartz"));
        QTRY_COMPARE(myDay().content(), MyDayViewModel::NoMatch);
        QTRY_VERIFY(item(QStringLiteral("stateTitle"))->isVisible());
        QCOMPARE(textOf(QStringLiteral("stateTitle")), QStringLiteral("No tasks match “zebra quartz”"));
        QCOMPARE(item(QStringLiteral("stateHint"))->property("text").toString(),
                 QStringLiteral("Search checks task name, task ID, list, assignee, and status."));
        QVERIFY(!item(QStringLiteral("taskList"))->isVisible());
    }

    void theEmptyStateTitleFollowsTheAssigneeFilter() {
        answerNoTasks();
        showTasksTab();
        QTRY_COMPARE(myDay().content(), MyDayViewModel::Empty);
        QTRY_COMPARE(textOf(QStringLiteral("stateTitle")), QStringLiteral("No open tasks assigned to you."));
        myDay().chooseAssignee(1);
        QTRY_COMPARE(textOf(QStringLiteral("stateTitle")), QStringLiteral("No open tasks match the current filters."));
        myDay().chooseAssignee(2);
        QTRY_COMPARE(textOf(QStringLiteral("stateTitle")),
                     QStringLiteral("No unassigned tasks match the current filters."));
        myDay().state().setAssigneeFilter(
            {TaskAssigneeFilter::Person{SandboxDemo::anonymousUserID, QStringLiteral("User 4810005")}});
        QTRY_COMPARE(textOf(QStringLiteral("stateTitle")), QStringLiteral("No open tasks assigned to User 4810005"));
        QCOMPARE(myDay().assigneeChipText(), QStringLiteral("User 4810005"));
    }

    void aMemberWithoutNameOrEmailIsOfferedAsUserAndTheID() {
        showTasksTab();
        waitForRows();
        const QString anonymous = QStringLiteral("User ") + QString::number(SandboxDemo::anonymousUserID);
        QTRY_VERIFY2(myDay().assigneeChoices().contains(anonymous), qPrintable(myDay().assigneeChoices().join(u'|')));
        QCOMPARE(
            myDay().assigneeChoices().mid(0, 3),
            (QStringList{QStringLiteral("Assigned to me"), QStringLiteral("Anyone"), QStringLiteral("Unassigned")}));
    }

    void aChangeOfTheRefreshKeyFetchesAgainWithTheNewFilter() {
        showTasksTab();
        waitForRows();
        QVERIFY(m_sandbox.clearRequests());
        const QString key = myDay().state().refreshKey();
        myDay().chooseAssignee(1);
        QVERIFY(myDay().state().refreshKey() != key);
        QTRY_VERIFY(!taskSearches().isEmpty());
        QVERIFY(!taskSearches().first().hasQueryItem(QStringLiteral("assignees[]")));
        waitForRows();
        QCOMPARE(myDay().assigneeChipText(), QStringLiteral("Anyone"));
    }

    void theStatusChipOpensItsMenuAndAChoiceByKeyboardFiltersTheTasks() {
        showTasksTab();
        waitForRows();
        QVERIFY(m_sandbox.clearRequests());
        QQuickItem* chip = item(QStringLiteral("statusChip"));
        QVERIFY(chip);
        QCOMPARE(chip->property("value").toString(), QStringLiteral("All statuses"));
        const QStringList choices = myDay().statusChoices();
        QVERIFY2(choices.size() > 2, qPrintable(choices.join(u'|')));
        QCOMPARE(choices.first(), QStringLiteral("All statuses"));
        click(chip);
        auto* menu = chip->findChild<QObject*>(QStringLiteral("chipMenu"));
        // Past "All statuses" to the first status.
        QVERIFY(KeyboardDriver(popover()).chooseInMenu(menu, 1));
        QTRY_COMPARE(myDay().statusChipText(), choices.at(1));
        QTRY_VERIFY(!taskSearches().isEmpty());
        QCOMPARE(taskSearches().first().queryItemValue(QStringLiteral("statuses[]")), choices.at(1));
        // Escape closes a menu and leaves the popover open.
        click(chip);
        QVERIFY(KeyboardDriver::waitForMenu(menu));
        key(Qt::Key_Escape);
        QTRY_VERIFY(!menu->property("opened").toBool());
        QVERIFY(popover().isVisible());
    }

    void arrowsAndReturnOpenARowsActionsAndEscapeClosesThem() {
        showTasksTab();
        waitForRows();
        openFirstRowByKeyboard();
        const QString first = rows().at(myDay().nextTaskRow(-1, 1)).node.task.id;
        QVERIFY(item(QStringLiteral("copyTaskLink"))->isVisible());
        key(Qt::Key_Escape);
        QTRY_VERIFY(!item(QStringLiteral("copyTaskLink")));
        QVERIFY(popover().isVisible());
        QTRY_VERIFY(item(QStringLiteral("taskList"))->hasActiveFocus());
        // Down moves to the next task, past a section's title.
        key(Qt::Key_Down);
        key(Qt::Key_Return);
        QTRY_VERIFY(item(QStringLiteral("copyTaskLink")) && item(QStringLiteral("copyTaskLink"))->hasActiveFocus());
        key(Qt::Key_Space);
        QTRY_COMPARE(m_fixture->state.linkActions().copied().size(), 1);
        const QString second = rows().at(myDay().nextTaskRow(myDay().nextTaskRow(-1, 1), 1)).node.task.id;
        QVERIFY(first != second);
        QVERIFY2(m_fixture->state.linkActions().copied().first().endsWith(second),
                 qPrintable(m_fixture->state.linkActions().copied().first()));
        QTRY_COMPARE(item(QStringLiteral("copyTaskLink"))->property("copied").toBool(), true);
    }

    void theStatusMenuListsTheListsStatusesOnceKnown() {
        showTasksTab();
        waitForRows();
        openFirstRowByKeyboard();
        const QString taskID = rows().at(myDay().nextTaskRow(-1, 1)).node.task.id;
        QTRY_VERIFY(!statusesOf(taskID).isEmpty());
        click(QStringLiteral("changeStatus"));
        QTRY_VERIFY(item(QStringLiteral("loadingStatuses")));
        QVERIFY(!item(QStringLiteral("loadingStatuses"))->isVisible());
        const QString first = statusesOf(taskID).first().name;
        QVERIFY(QuickItems::accessibleNames(popover().contentItem()).contains(first));
    }

    void statusesThatArriveWhileTheActionsAreOpenFillTheStatusMenu() {
        // The lists' statuses wait for the test, however often the rows ask.
        SandboxFault held = SandboxFault::hold(QStringLiteral("/api/v2/list/*")).forMethod(QStringLiteral("GET"));
        held.times = -1;
        QVERIFY(m_sandbox.addFault(held));
        showTasksTab();
        waitForRows();
        openFirstRowByKeyboard();
        const QString taskID = rows().at(myDay().nextTaskRow(-1, 1)).node.task.id;
        click(QStringLiteral("changeStatus"));
        QTRY_VERIFY(item(QStringLiteral("loadingStatuses")) && item(QStringLiteral("loadingStatuses"))->isVisible());
        QVERIFY(statusesOf(taskID).isEmpty());
        QVERIFY(m_sandbox.releaseHeld());
        QTRY_VERIFY(!statusesOf(taskID).isEmpty());
        QTRY_VERIFY(!item(QStringLiteral("loadingStatuses"))->isVisible());
        const QString first = statusesOf(taskID).first().name;
        QTRY_VERIFY(QuickItems::accessibleNames(popover().contentItem()).contains(first));
    }

    void aReusedRowAsksForTheStatusesOfItsTask() {
        showTasksTab();
        QQuickItem* list = item(QStringLiteral("taskList"));
        QVERIFY(list);
        // Items are made only for the rows in sight, at once, never later in the background.
        list->setProperty("cacheBuffer", 0);
        waitForRows();
        QTRY_COMPARE(list->property("count").toInt(), rows().size());
        auto* content = list->property("contentItem").value<QQuickItem*>();

        // Scrolled half a page at a time, as a person does, the rows that leave lend their items to
        // those that come in. Each item is noted with the task it was made for, whose list it asked
        // for; the rest only show other tasks.
        QHash<QQuickItem*, QString> madeFor;
        // False when no row comes into sight.
        const auto scroll = [&](qreal pages) {
            const qreal top = list->property("contentY").toReal() + pages * list->height();
            list->setProperty("contentY", top);
            if (!QTest::qWaitFor([&] { return indexAt(list, top) >= 0; })) {
                return false;
            }
            for (QQuickItem* row : content->childItems()) {
                if (!madeFor.contains(row)) {
                    madeFor.insert(row, row->property("taskID").toString());
                }
            }
            return true;
        };
        QVERIFY(scroll(0));
        while (!list->property("atYEnd").toBool()) {
            QVERIFY(scroll(0.5));
        }
        const auto asked = [&] {
            QSet<QString> lists;
            for (const QString& taskID : std::as_const(madeFor)) {
                if (const NVTaskSummary* task = taskOf(taskID); task && task->list) {
                    lists.insert(task->list->id);
                }
            }
            return lists;
        };
        // The last task of a list no item was made for, scrolled back into sight.
        int target = -1;
        for (int index = 0; index < rows().size(); ++index) {
            const auto& taskList = rows()[index].node.task.list;
            if (rows()[index].kind == MyDayRow::Kind::task && taskList && !asked().contains(taskList->id)) {
                target = index;
            }
        }
        QVERIFY2(target >= 0, "an item was made for a task of each list");
        const NVTaskSummary task = rows()[target].node.task;
        QQuickItem* reused = nullptr;
        while (!(reused = rowView(target, false)) && !list->property("atYBeginning").toBool()) {
            QVERIFY(scroll(-0.5));
        }
        QVERIFY(reused);
        QVERIFY2(!asked().contains(task.list->id), "no item was made for a task of its list on the way back");
        QVERIFY(madeFor.contains(reused) && madeFor.value(reused) != task.id);
        QTRY_VERIFY(!statusesOf(task.id).isEmpty());

        // Its status menu lists them.
        click(reused);
        click(QStringLiteral("changeStatus"));
        auto* menu = item(QStringLiteral("changeStatus"))->findChild<QObject*>(QStringLiteral("statusMenu"));
        QVERIFY(menu);
        QTRY_VERIFY(menu->property("opened").toBool());
        QVERIFY(!item(QStringLiteral("loadingStatuses"))->isVisible());
        const QString first = statusesOf(task.id).first().name;
        QVERIFY(QuickItems::accessibleNames(popover().contentItem()).contains(first));
    }

    void remindMeOffersItsTimesAndKeepsAReminderAtTheOneChosen() {
        showTasksTab();
        waitForRows();
        openFirstRowByKeyboard();
        const NVTaskSummary task = rows().at(myDay().nextTaskRow(-1, 1)).node.task;
        click(QStringLiteral("remindMe"));
        QObject* menu = item(QStringLiteral("remindMe"))->findChild<QObject*>(QStringLiteral("remindMenu"));
        QVERIFY(KeyboardDriver::waitForMenu(menu, 3));
        QCOMPARE(entryLabels(menu), (QStringList{QStringLiteral("In 30 minutes"), QStringLiteral("In 1 hour"),
                                                 QStringLiteral("In 3 hours"), QStringLiteral("Tomorrow morning")}));
        const QDateTime before = QDateTime::currentDateTimeUtc();
        QVERIFY(KeyboardDriver(popover()).chooseInMenu(menu, 1));
        const QDateTime after = QDateTime::currentDateTimeUtc();
        const ReminderSchedule& reminders = m_fixture->app->notifications().reminders();
        QTRY_COMPARE(reminders.reminders().size(), 1);
        const Reminder reminder = reminders.reminders().first();
        QCOMPARE(reminder.taskName, task.name);
        QVERIFY2(reminder.fireDate >= before.addSecs(3600) && reminder.fireDate <= after.addSecs(3600),
                 qPrintable(reminder.fireDate.toString(Qt::ISODateWithMs)));
    }

    void moveDueDateOffersItsMovesAndSendsTheOneChosen() {
        showTasksTab();
        waitForRows();
        openFirstRowByKeyboard();
        const QString taskID = rows().at(myDay().nextTaskRow(-1, 1)).node.task.id;
        QVERIFY(m_sandbox.clearRequests());
        click(QStringLiteral("moreActions"));
        QObject* more = item(QStringLiteral("moreActions"))->findChild<QObject*>(QStringLiteral("moreMenu"));
        QVERIFY(KeyboardDriver::waitForMenu(more, 2));
        // Down to "Move due date…", whose entries Right opens.
        for (int presses = 0; presses < 5 && more->property("currentIndex").toInt() != 1; ++presses) {
            key(Qt::Key_Down);
        }
        QCOMPARE(more->property("currentIndex").toInt(), 1);
        key(Qt::Key_Right);
        QObject* menu = more->findChild<QObject*>(QStringLiteral("moveDueDateMenu"));
        QVERIFY(KeyboardDriver::waitForMenu(menu, 3));
        QCOMPARE(entryLabels(menu), (QStringList{QStringLiteral("+1 hour"), QStringLiteral("This evening"),
                                                 QStringLiteral("Tomorrow 9 AM"), QStringLiteral("Next Monday")}));
        const QDateTime expected =
            QuickTimes::dueDate(QuickTimes::DueDateMove::tomorrow9AM, QDateTime::currentDateTime());
        QVERIFY(KeyboardDriver(popover()).chooseInMenu(menu, 2));
        QTRY_VERIFY_WITH_TIMEOUT(!sentChange(taskID).isEmpty(), 10000);
        QCOMPARE(sentChange(taskID).value(QStringLiteral("due_date")).toInteger(), expected.toMSecsSinceEpoch());
    }

    void markCompleteRemovesTheRowAndTellsTheService() {
        showTasksTab();
        waitForRows();
        openFirstRowByKeyboard();
        const QString taskID = rows().at(myDay().nextTaskRow(-1, 1)).node.task.id;
        const qsizetype before = rows().size();
        QVERIFY(m_sandbox.clearRequests());
        click(QStringLiteral("moreActions"));
        click(QStringLiteral("markComplete"));
        QTRY_COMPARE_WITH_TIMEOUT(rowOf(taskID), -1, 10000);
        QVERIFY(rows().size() < before);
        bool put = false;
        for (const QJsonValue& request : m_sandbox.requests()) {
            put |= request[QStringLiteral("method")] == QStringLiteral("PUT") &&
                   request[QStringLiteral("path")].toString().endsWith(QStringLiteral("/task/") + taskID);
        }
        QVERIFY(put);
        QCOMPARE(myDay().rowError(), QString());
    }

    void hostileTaskNamesAreShownAsPlainTextAndFetchNothing() {
        showTasksTab();
        waitForRows();
        for (const QString& name : SandboxDemo::hostileTaskNames(m_sandbox.webUrl(u""))) {
            const int row = [&] {
                for (qsizetype index = 0; index < rows().size(); ++index) {
                    if (rows()[index].node.task.name == name) {
                        return static_cast<int>(index);
                    }
                }
                return -1;
            }();
            QVERIFY2(row >= 0, qPrintable(name));
            QQuickItem* view = rowView(row);
            QVERIFY(view);
            QQuickItem* label = view->findChild<QQuickItem*>(QStringLiteral("taskName"));
            QTRY_COMPARE(QuickItems::plainText(label), name);
            // Long names elide inside the row, once the row scrolled into view is laid out.
            QTRY_VERIFY2(label->mapToScene({label->width(), 0}).x() <= popover().width(), qPrintable(name));
        }
        QCOMPARE(m_fixture->picturesFetchedAfterPainting(m_sandbox), QStringList());
    }

    void everyControlOfTheTabHasAnAccessibleName() {
        showTasksTab();
        waitForRows();
        openFirstRowByKeyboard();
        QStringList unnamed;
        const std::function<void(QQuickItem*)> walk = [&](QQuickItem* node) {
            const bool control = node->inherits("QQuickAbstractButton") || node->inherits("QQuickTextField") ||
                                 node->inherits("QQuickComboBox") || node->objectName() == QLatin1String("taskList");
            if (control && node->isVisible()) {
                QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(node);
                if (!accessible || accessible->text(QAccessible::Name).isEmpty()) {
                    unnamed.append(node->objectName() + QLatin1Char(':') +
                                   QString::fromLatin1(node->metaObject()->className()));
                }
            }
            for (QQuickItem* child : node->childItems()) {
                walk(child);
            }
        };
        walk(popover().contentItem());
        click(QStringLiteral("moreActions"));
        QTRY_VERIFY(item(QStringLiteral("markComplete")) && item(QStringLiteral("markComplete"))->isVisible());
        walk(popover().contentItem());
        QVERIFY2(unnamed.isEmpty(), qPrintable(unnamed.join(u", ")));
        const QStringList names = QuickItems::accessibleNames(popover().contentItem());
        for (const QString& name :
             {QStringLiteral("Refresh tasks"), QStringLiteral("Search tasks"), QStringLiteral("Copy link"),
              QStringLiteral("Copy Git branch name"), QStringLiteral("Remind me"), QStringLiteral("Change status"),
              QStringLiteral("More actions"), QStringLiteral("Mark complete"), QStringLiteral("Open in Norvane"),
              QStringLiteral("Create"), QStringLiteral("Tasks")}) {
            QVERIFY2(names.contains(name), qPrintable(name));
        }
    }
};

NORVANEBAR_TEST_MAIN(MyDayViewTest)
#include "MyDayViewTest.moc"
