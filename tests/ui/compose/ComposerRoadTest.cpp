#include "desktop/compose/FieldChipsViewModel.h"
#include "support/KeyboardDriver.h"
#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/SubmitTesting.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QQuickItem>
#include <QTest>

// A task's whole road by keyboard alone: from an empty composer in the popover, through the
// location picker, the chips, the template menu and the bulk editor, to what norvane-sandbox
// received. Only key events reach the popover; the draft and the view models are only read.
class ComposerRoadTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;
    std::unique_ptr<KeyboardDriver> m_keys;

    PopoverWindow& popover() { return m_fixture->popover; }
    TaskDraft& draft() { return m_fixture->app->draft(); }
    FieldChipsViewModel& chips() { return m_fixture->pages.fieldChips(); }
    KeyboardDriver& keys() { return *m_keys; }

    QQuickItem* item(const QString& objectName) { return QuickItems::visualChild(popover().contentItem(), objectName); }
    QQuickItem* chip(const QString& chipID) { return item(QStringLiteral("chip-") + chipID); }

    // The Inbox's custom field of that name, or an empty one.
    CustomField field(const QString& name) {
        for (const CustomField& field : m_fixture->app->currentContext()->fields()) {
            if (field.name == name) {
                return field;
            }
        }
        return {};
    }

    QString customChip(const QString& name) { return QStringLiteral("custom-") + field(name).id; }

    // The id of a drop-down's or labels field's option.
    QString optionID(const QString& fieldName, const QString& optionName) {
        const std::optional<CustomField::TypeConfig> config = field(fieldName).typeConfig;
        if (!config || !config->options) {
            return {};
        }
        for (const CustomField::TypeConfig::Option& option : *config->options) {
            if (option.name == optionName || option.label == optionName) {
                return option.id;
            }
        }
        return {};
    }

    // Tabs to the chip, opens its menu with Space and chooses the entry of that label: false when a
    // step fails.
    bool chooseFromMenu(const QString& chipID, const QString& label) {
        QQuickItem* target = chip(chipID);
        if (!keys().tabTo(target)) {
            return false;
        }
        keys().press(Qt::Key_Space);
        QObject* menu = nullptr;
        if (!QTest::qWaitFor([&] { return (menu = target->findChild<QObject*>(QStringLiteral("chipMenu"))); })) {
            return false;
        }
        const QList<ChipMenuEntry> entries = chips().menuEntries(chipID);
        for (int index = 0; index < entries.size(); ++index) {
            if (entries.at(index).label == label) {
                return keys().chooseInMenu(menu, index);
            }
        }
        return false;
    }

    // Tabs to the chip, opens its popover with Return, types `text` into its field and commits it
    // with Return: false when the field doesn't take the keyboard.
    bool typeIntoPopover(const QString& chipID, const QString& fieldName, const QString& text) {
        if (!keys().tabTo(chip(chipID))) {
            return false;
        }
        keys().press(Qt::Key_Return);
        if (!QTest::qWaitFor([&] { return item(fieldName) && item(fieldName)->hasActiveFocus(); })) {
            return false;
        }
        keys().type(text);
        keys().press(Qt::Key_Return);
        return true;
    }

    bool pickerOpen() {
        const QObject* picker = m_fixture->find(QStringLiteral("locationPicker"));
        return picker && picker->property("opened").toBool();
    }

    // Shift+Tab from the task's name to the location selector, Return, part of "Inbox" and Return:
    // false when a step fails.
    bool chooseInboxInThePicker() {
        if (!keys().tabTo(qobject_cast<QQuickItem*>(m_fixture->find(QStringLiteral("locationSelector"))), true)) {
            return false;
        }
        keys().press(Qt::Key_Return);
        if (!QTest::qWaitFor([&] {
                return pickerOpen() && m_fixture->location->rowModel().rowCount() > 0 && keys().focused() &&
                       keys().focused()->objectName() == QStringLiteral("locationSearch");
            })) {
            return false;
        }
        keys().type(QStringLiteral("inb"));
        keys().press(Qt::Key_Return);
        return QTest::qWaitFor([&] { return !pickerOpen() && contextLoaded(SandboxDemo::inboxListID); }, 15000);
    }

    bool contextLoaded(const QString& listID) {
        const ListContext* context = m_fixture->app->currentContext();
        return context && context->entry().id() == listID && !context->isLoading() && context->fields().size() == 10;
    }

    // Ctrl+Return, then the created tasks' requests once the page of that kind shows.
    QJsonArray submitAndWait(SubmitViewModel::Page resultPage, qsizetype expected) {
        keys().press(Qt::Key_Return, Qt::ControlModifier);
        const QString ending = QStringLiteral("/list/%1/task").arg(SandboxDemo::inboxListID);
        QJsonArray creates;
        const bool finished = QTest::qWaitFor(
            [&] {
                creates = SubmitTesting::postsEndingWith(m_sandbox.requests(), ending);
                return m_fixture->submit->page() == resultPage && creates.size() >= expected;
            },
            15000);
        return finished ? creates : QJsonArray();
    }

    static QJsonObject customFieldsByID(const QJsonObject& body) {
        QJsonObject values;
        for (const QJsonValue entry : body.value(QStringLiteral("custom_fields")).toArray()) {
            values.insert(entry[QStringLiteral("id")].toString(), entry[QStringLiteral("value")]);
        }
        return values;
    }

private slots:
    void initTestCase() { QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString())); }

    void cleanup() {
        m_keys.reset();
        m_fixture.reset();
    }

    void everyChipChosenByKeyboardReachesTheCreatedTask() {
        m_fixture = PopoverFixture::shownAgainst(m_sandbox);
        QVERIFY(m_fixture);
        m_keys = std::make_unique<KeyboardDriver>(popover());
        QCOMPARE(runTask(m_fixture->app->signIn(m_sandbox.token())), std::nullopt);
        m_fixture->showEveryStandardField();
        QVERIFY(QTest::qWaitForWindowActive(&popover()));
        QTRY_VERIFY(item(QStringLiteral("taskName")) && item(QStringLiteral("taskName"))->hasActiveFocus());
        QCOMPARE(m_fixture->app->currentContext(), nullptr);
        QVERIFY(chooseInboxInThePicker());
        QTRY_VERIFY(chip(QStringLiteral("default-status")));
        QVERIFY(m_sandbox.clearRequests());

        QVERIFY(keys().tabTo(item(QStringLiteral("taskName"))));
        keys().type(QStringLiteral("Ship the road"));
        QCOMPARE(draft().name(), QStringLiteral("Ship the road"));
        QVERIFY(keys().tabTo(item(QStringLiteral("taskDescription"))));
        keys().type(QStringLiteral("Every field\nby keyboard"));
        QCOMPARE(draft().descriptionText(), QStringLiteral("Every field\nby keyboard"));

        QVERIFY(chooseFromMenu(QStringLiteral("default-status"), QStringLiteral("in progress")));
        QCOMPARE(draft().status(), QStringLiteral("in progress"));

        const Member member = m_fixture->app->currentContext()->members().first();
        QVERIFY(chooseFromMenu(QStringLiteral("default-assignee"), member.displayName()));
        QCOMPARE(draft().assignees(), QSet<qint64>{member.id});

        QVERIFY(keys().tabTo(chip(QStringLiteral("default-dueDate"))));
        keys().press(Qt::Key_Space);
        QTRY_VERIFY(item(QStringLiteral("todayAtFive")) && item(QStringLiteral("todayAtFive"))->hasActiveFocus());
        QVERIFY(keys().tabTo(item(QStringLiteral("tomorrowAtNine"))));
        keys().press(Qt::Key_Space);
        const QDateTime tomorrowAtNine(QDate::currentDate().addDays(1), QTime(9, 0));
        QTRY_COMPARE(draft().dueDate(), std::optional(tomorrowAtNine));
        QVERIFY(draft().includeDueTime());
        QVERIFY(keys().tabTo(item(QStringLiteral("remindMe"))));
        keys().press(Qt::Key_Space);
        QTRY_VERIFY(draft().reminderEnabled());
        keys().press(Qt::Key_Escape);
        QTRY_VERIFY(!item(QStringLiteral("dueDatePopover")));

        QVERIFY(chooseFromMenu(QStringLiteral("default-priority"), QStringLiteral("High")));
        QCOMPARE(draft().priority(), std::optional<int>(2));

        QVERIFY(
            typeIntoPopover(QStringLiteral("default-tags"), QStringLiteral("newTag"), QStringLiteral("Needs Review")));
        QTRY_COMPARE(draft().tags(), QSet<QString>{QStringLiteral("Needs Review")});
        keys().press(Qt::Key_Escape);
        QTRY_VERIFY(!item(QStringLiteral("tagsPopover")));

        QVERIFY(keys().tabTo(item(QStringLiteral("moreFieldsChip"))));
        keys().press(Qt::Key_Space);
        QTRY_VERIFY(chip(customChip(QStringLiteral("Customer"))));

        QVERIFY(chooseFromMenu(customChip(QStringLiteral("Severity")), QStringLiteral("Critical")));
        QCOMPARE(draft().custom().value(field(QStringLiteral("Severity")).id),
                 CustomValue::option(optionID(QStringLiteral("Severity"), QStringLiteral("Critical"))));

        QVERIFY(chooseFromMenu(customChip(QStringLiteral("Components")), QStringLiteral("Backend")));
        QCOMPARE(draft().custom().value(field(QStringLiteral("Components")).id),
                 CustomValue::labels({optionID(QStringLiteral("Components"), QStringLiteral("Backend"))}));

        const QDateTime targetDay(QDate(2027, 3, 15), QTime(0, 0));
        QVERIFY(typeIntoPopover(customChip(QStringLiteral("Target date")), QStringLiteral("dateValue"),
                                QStringLiteral("2027-03-15")));
        QTRY_COMPARE(draft().custom().value(field(QStringLiteral("Target date")).id), CustomValue::date(targetDay));
        QTRY_VERIFY(!item(QStringLiteral("dateValuePopover")));

        QVERIFY(keys().tabTo(chip(customChip(QStringLiteral("Customer facing")))));
        keys().press(Qt::Key_Space);
        QTRY_COMPARE(draft().custom().value(field(QStringLiteral("Customer facing")).id), CustomValue::checkbox(true));

        // Each text kind through its popover, committed with Return.
        const QList<std::pair<QString, CustomValue>> typed{
            {QStringLiteral("Customer"), CustomValue::text(QStringLiteral("Acme & Co"))},
            {QStringLiteral("Short note"), CustomValue::text(QStringLiteral("Call back"))},
            {QStringLiteral("Estimate (h)"), CustomValue::number(QStringLiteral("7"))},
            {QStringLiteral("Design link"), CustomValue::text(QStringLiteral("https://example.com/design"))},
            {QStringLiteral("Contact email"), CustomValue::text(QStringLiteral("ops@example.com"))},
            {QStringLiteral("Contact phone"), CustomValue::text(QStringLiteral("+1 555 010 0199"))}};
        for (const auto& [name, value] : typed) {
            const QString text = std::holds_alternative<CustomValue::Number>(value.value)
                                     ? std::get<CustomValue::Number>(value.value).text
                                     : std::get<CustomValue::Text>(value.value).text;
            QVERIFY(typeIntoPopover(customChip(name), QStringLiteral("textValue"), text));
            QTRY_COMPARE(draft().custom().value(field(name).id), value);
            QTRY_VERIFY(!item(QStringLiteral("textValuePopover")));
        }
        keys().press(Qt::Key_Escape);
        QTRY_VERIFY(!chip(customChip(QStringLiteral("Customer"))));
        QCOMPARE(draft().custom().size(), 10);

        const QJsonArray creates = submitAndWait(SubmitViewModel::Done, 1);
        QCOMPARE(m_fixture->submit->page(), SubmitViewModel::Done);
        QCOMPARE(creates.size(), 1);
        const QJsonObject body = creates.first()[QStringLiteral("json")].toObject();
        QCOMPARE(body.value(QStringLiteral("name")).toString(), QStringLiteral("Ship the road"));
        QCOMPARE(body.value(QStringLiteral("markdown_description")).toString(),
                 QStringLiteral("Every field\nby keyboard"));
        QCOMPARE(body.value(QStringLiteral("status")).toString(), QStringLiteral("in progress"));
        QCOMPARE(body.value(QStringLiteral("assignees")).toArray(), QJsonArray{member.id});
        QCOMPARE(body.value(QStringLiteral("due_date")).toInteger(), tomorrowAtNine.toMSecsSinceEpoch());
        QCOMPARE(body.value(QStringLiteral("due_date_time")), QJsonValue(true));
        QCOMPARE(body.value(QStringLiteral("priority")).toInteger(), 2);
        QCOMPARE(body.value(QStringLiteral("tags")).toArray(), QJsonArray{QStringLiteral("Needs Review")});
        const QJsonObject custom = customFieldsByID(body);
        QCOMPARE(custom.size(), 10);
        QCOMPARE(custom.value(field(QStringLiteral("Severity")).id),
                 QJsonValue(optionID(QStringLiteral("Severity"), QStringLiteral("Critical"))));
        QCOMPARE(custom.value(field(QStringLiteral("Components")).id),
                 QJsonArray{optionID(QStringLiteral("Components"), QStringLiteral("Backend"))});
        QCOMPARE(custom.value(field(QStringLiteral("Target date")).id).toInteger(), targetDay.toMSecsSinceEpoch());
        QCOMPARE(custom.value(field(QStringLiteral("Customer facing")).id), QJsonValue(true));
        QCOMPARE(custom.value(field(QStringLiteral("Customer")).id), QJsonValue(QStringLiteral("Acme & Co")));
        QCOMPARE(custom.value(field(QStringLiteral("Short note")).id), QJsonValue(QStringLiteral("Call back")));
        QCOMPARE(custom.value(field(QStringLiteral("Estimate (h)")).id), QJsonValue(7));
        QCOMPARE(custom.value(field(QStringLiteral("Design link")).id),
                 QJsonValue(QStringLiteral("https://example.com/design")));
        QCOMPARE(custom.value(field(QStringLiteral("Contact email")).id),
                 QJsonValue(QStringLiteral("ops@example.com")));
        QCOMPARE(custom.value(field(QStringLiteral("Contact phone")).id),
                 QJsonValue(QStringLiteral("+1 555 010 0199")));
    }

    void aTemplateAppliedByKeyboardFillsTheCreatedTask() {
        m_fixture = PopoverFixture::signedInAgainst(m_sandbox, SandboxDemo::inboxListID);
        QVERIFY(m_fixture);
        m_keys = std::make_unique<KeyboardDriver>(popover());
        m_fixture->showEveryStandardField();
        QVERIFY(QTest::qWaitForWindowActive(&popover()));
        QTRY_VERIFY_WITH_TIMEOUT(contextLoaded(SandboxDemo::inboxListID), 15000);
        const QString facing = field(QStringLiteral("Customer facing")).id;
        const QString estimate = field(QStringLiteral("Estimate (h)")).id;
        const TaskTemplate bug{
            .name = QStringLiteral("Bug report"),
            .listID = SandboxDemo::inboxListID,
            .listPath = QStringLiteral("Product › Inbox"),
            .taskName = QStringLiteral("Crash on start"),
            .descriptionMarkdown = QStringLiteral("Steps to reproduce"),
            .status = QStringLiteral("review"),
            .priority = 1,
            .tags = {QStringLiteral("bug"), QStringLiteral("Crash")},
            .custom = {{facing, CustomValue::checkbox(true)}, {estimate, CustomValue::number(QStringLiteral("2.5"))}}};
        m_fixture->app->settings().modify([&](AppSettings& settings) { settings.templates = {bug}; });
        QTRY_COMPARE(m_fixture->templates->names(), QStringList{QStringLiteral("Bug report")});
        QVERIFY(m_sandbox.clearRequests());

        QVERIFY(keys().tabTo(item(QStringLiteral("templateMenuButton"))));
        keys().press(Qt::Key_Space);
        QObject* menu = m_fixture->find(QStringLiteral("templateMenu"));
        QVERIFY(keys().chooseInMenu(menu, 0));
        QTRY_COMPARE(draft().name(), QStringLiteral("Crash on start"));
        QCOMPARE(draft().descriptionText(), QStringLiteral("Steps to reproduce"));
        QCOMPARE(draft().priority(), std::optional<int>(1));
        QCOMPARE(draft().status(), QStringLiteral("review"));
        QCOMPARE(draft().tags(), bug.tags);
        QCOMPARE(draft().custom(), bug.custom);

        const QJsonArray creates = submitAndWait(SubmitViewModel::Done, 1);
        QCOMPARE(m_fixture->submit->page(), SubmitViewModel::Done);
        QCOMPARE(creates.size(), 1);
        const QJsonObject body = creates.first()[QStringLiteral("json")].toObject();
        QCOMPARE(body.value(QStringLiteral("name")).toString(), QStringLiteral("Crash on start"));
        QCOMPARE(body.value(QStringLiteral("markdown_description")).toString(), QStringLiteral("Steps to reproduce"));
        QCOMPARE(body.value(QStringLiteral("status")).toString(), QStringLiteral("review"));
        QCOMPARE(body.value(QStringLiteral("priority")).toInteger(), 1);
        // Sorted by plain string order: capitals first.
        QCOMPARE(body.value(QStringLiteral("tags")).toArray(),
                 (QJsonArray{QStringLiteral("Crash"), QStringLiteral("bug")}));
        QVERIFY(!body.contains(QStringLiteral("assignees")));
        QVERIFY(!body.contains(QStringLiteral("due_date")));
        const QJsonObject custom = customFieldsByID(body);
        QCOMPARE(custom.size(), 2);
        QCOMPARE(custom.value(facing), QJsonValue(true));
        QCOMPARE(custom.value(estimate), QJsonValue(2.5));
    }

    void threeLinesInBulkShareTheChips() {
        m_fixture = PopoverFixture::signedInAgainst(m_sandbox, SandboxDemo::inboxListID);
        QVERIFY(m_fixture);
        m_keys = std::make_unique<KeyboardDriver>(popover());
        m_fixture->app->settings().set(&AppSettings::visibleDefaultFields,
                                       QSet<DefaultField>{DefaultField::priority, DefaultField::tags});
        QVERIFY(QTest::qWaitForWindowActive(&popover()));
        QTRY_VERIFY_WITH_TIMEOUT(contextLoaded(SandboxDemo::inboxListID), 15000);
        QTRY_VERIFY(item(QStringLiteral("taskName")) && item(QStringLiteral("taskName"))->hasActiveFocus());
        QVERIFY(m_sandbox.clearRequests());

        QVERIFY(keys().tabTo(item(QStringLiteral("bulkMode")), true));
        keys().press(Qt::Key_Space);
        QTRY_VERIFY(m_fixture->composer->isBulkMode());
        QTRY_VERIFY(item(QStringLiteral("bulkEditor")) && item(QStringLiteral("bulkEditor"))->isVisible());
        QVERIFY(keys().tabTo(item(QStringLiteral("bulkEditor"))));
        keys().type(QStringLiteral("Order chairs\nBook the room\nSend invites"));
        QCOMPARE(m_fixture->composer->bulkLines(), QStringLiteral("Order chairs\nBook the room\nSend invites"));

        QVERIFY(chooseFromMenu(QStringLiteral("default-priority"), QStringLiteral("High")));
        QCOMPARE(draft().priority(), std::optional<int>(2));
        QVERIFY(typeIntoPopover(QStringLiteral("default-tags"), QStringLiteral("newTag"), QStringLiteral("Offsite")));
        QTRY_COMPARE(draft().tags(), QSet<QString>{QStringLiteral("Offsite")});
        keys().press(Qt::Key_Escape);
        QTRY_VERIFY(!item(QStringLiteral("tagsPopover")));

        const QJsonArray creates = submitAndWait(SubmitViewModel::BulkDone, 3);
        QCOMPARE(m_fixture->submit->page(), SubmitViewModel::BulkDone);
        QCOMPARE(creates.size(), 3);
        QStringList names;
        for (const QJsonValue create : creates) {
            const QJsonObject body = create[QStringLiteral("json")].toObject();
            names << body.value(QStringLiteral("name")).toString();
            QCOMPARE(body.value(QStringLiteral("priority")).toInteger(), 2);
            QCOMPARE(body.value(QStringLiteral("tags")).toArray(), QJsonArray{QStringLiteral("Offsite")});
        }
        names.sort();
        QCOMPARE(names, (QStringList{QStringLiteral("Book the room"), QStringLiteral("Order chairs"),
                                     QStringLiteral("Send invites")}));
    }
};

NORVANEBAR_TEST_MAIN(ComposerRoadTest)
#include "ComposerRoadTest.moc"
