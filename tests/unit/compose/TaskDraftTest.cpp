#include "core/compose/TaskDraft.h"
#include "core/json/JsonEncoding.h"
#include "support/DraftTesting.h"
#include "support/TestMain.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <limits>

using namespace DraftTesting;

namespace {
QByteArray body(const CreateTaskRequest& request) {
    return Json::serialize(request.toJson());
}

// Makes the change twice and expects one notification.
template <typename Signal, typename Change> void notifiesOnceForTheSameChangeTwice(Signal signal, Change change) {
    TaskDraft draft(fixedClock());
    QSignalSpy spy(&draft, signal);
    change(draft);
    change(draft);
    QCOMPARE(spy.count(), 1);
}
} // namespace

class TaskDraftTest : public QObject {
    Q_OBJECT

private slots:
    // The request body.

    void aFullDraftSendsEveryVisibleField() {
        TaskDraft draft(fixedClock());
        fill(draft);
        QCOMPARE(body(draft.buildRequest(allFields)),
                 QByteArray(R"({"assignees":[42],"custom_fields":[{"id":"cf-1","value":"x"}],)"
                            R"("due_date":1773151200000,"due_date_time":true,)"
                            R"("markdown_description":"Line one\nline two","name":"Write report","priority":2,)"
                            R"("status":"in progress","tags":["a","b"]})"));
    }

    void withNoVisibleFieldsOnlyNameDescriptionAndCustomFieldsGo() {
        TaskDraft draft(fixedClock());
        fill(draft);
        QCOMPARE(body(draft.buildRequest({})),
                 QByteArray(R"({"custom_fields":[{"id":"cf-1","value":"x"}],)"
                            R"("markdown_description":"Line one\nline two","name":"Write report"})"));
    }

    void aNameOfOnlyNewlinesGoesOutAsAnEmptyName() {
        // The submission guard trims spaces and tabs alone, so such a name reaches the request.
        TaskDraft draft(fixedClock());
        draft.setName(QStringLiteral("\n\r\n\u2028\n"));
        QCOMPARE(body(draft.buildRequest(allFields)), QByteArray(R"({"name":""})"));
    }

    void nameAndDescriptionLoseEveryKindOfSpaceAndNewlineAtTheirEnds() {
        TaskDraft draft(fixedClock());
        draft.setName(QStringLiteral("\u00a0\u2003 \tTitle  here\u3000\u2028\u0085\r\n"));
        draft.setDescriptionText(QStringLiteral("\u2029\v\f Some\ntext \u00a0"));
        const CreateTaskRequest request = draft.buildRequest(allFields);
        QCOMPARE(request.name, QStringLiteral("Title  here"));
        QCOMPARE(request.markdownDescription, QStringLiteral("Some\ntext"));
    }

    void aDescriptionOfOnlySpaceAndNewlinesIsLeftOut() {
        TaskDraft draft(fixedClock());
        draft.setName(QStringLiteral("Task"));
        draft.setDescriptionText(QStringLiteral(" \n\t\u3000\r\n"));
        QCOMPARE(draft.buildRequest(allFields).markdownDescription, std::nullopt);
    }

    void eachStandardFieldGoesOnlyWhenItIsVisible() {
        TaskDraft draft(fixedClock());
        fill(draft);
        const QJsonObject full = draft.buildRequest(allFields).toJson();
        const std::pair<DefaultField, QStringList> fields[] = {
            {DefaultField::status, {QStringLiteral("status")}},
            {DefaultField::assignee, {QStringLiteral("assignees")}},
            {DefaultField::dueDate, {QStringLiteral("due_date"), QStringLiteral("due_date_time")}},
            {DefaultField::priority, {QStringLiteral("priority")}},
            {DefaultField::tags, {QStringLiteral("tags")}},
        };
        for (const auto& [field, keys] : fields) {
            QSet<DefaultField> visible = allFields;
            visible.remove(field);
            QJsonObject expected = full;
            for (const QString& key : keys) {
                QVERIFY(expected.contains(key));
                expected.remove(key);
            }
            QCOMPARE(draft.buildRequest(visible).toJson(), expected);
        }
    }

    void emptyAssigneesAndTagsAndAbsentStatusAndPriorityAreLeftOut() {
        TaskDraft draft(fixedClock());
        draft.setName(QStringLiteral("Task"));
        QCOMPARE(body(draft.buildRequest(allFields)), QByteArray(R"({"name":"Task"})"));
    }

    void assigneesGoInTheSetsOwnOrder() {
        TaskDraft draft(fixedClock());
        const QSet<qint64> assignees{9, 3, 1200, -4, 77, 5};
        draft.setAssignees(assignees);
        QCOMPARE(draft.buildRequest(allFields).assignees, QList<qint64>(assignees.begin(), assignees.end()));
    }

    void tagsAreSortedByPlainStringComparison() {
        TaskDraft draft(fixedClock());
        draft.setTags({QStringLiteral("beta"), QStringLiteral("\u00dcber"), QStringLiteral("alpha"),
                       QStringLiteral("Alpha"), QStringLiteral("9"), QStringLiteral("10")});
        QCOMPARE(draft.buildRequest(allFields).tags,
                 QList<QString>({QStringLiteral("10"), QStringLiteral("9"), QStringLiteral("Alpha"),
                                 QStringLiteral("alpha"), QStringLiteral("beta"), QStringLiteral("\u00dcber")}));
    }

    void customFieldsAreSortedByIdAndThoseGivingNoValueAreSkipped() {
        TaskDraft draft(fixedClock());
        draft.setCustom({
            {QStringLiteral("b"), CustomValue::checkbox(true)},
            {QStringLiteral("a2"), CustomValue::number(QStringLiteral("twelve"))},
            {QStringLiteral("a"), CustomValue::number(QStringLiteral("12"))},
            {QStringLiteral("C"), CustomValue::option(QStringLiteral("opt"))},
            {QStringLiteral("c"), CustomValue::checkbox(false)},
        });
        QCOMPARE(draft.buildRequest({}).customFields,
                 QList<CreateTaskRequest::CustomFieldValue>({
                     {QStringLiteral("C"), JSONValue::string(QStringLiteral("opt"))},
                     {QStringLiteral("a"), JSONValue::integer(12)},
                     {QStringLiteral("b"), JSONValue::boolean(true)},
                 }));
    }

    void customValuesGivingNothingLeaveCustomFieldsOut() {
        TaskDraft draft(fixedClock());
        draft.setCustom({{QStringLiteral("a"), CustomValue::number(QStringLiteral("twelve"))},
                         {QStringLiteral("b"), CustomValue::checkbox(false)}});
        QCOMPARE(draft.buildRequest(allFields).customFields, std::nullopt);
    }

    // Due dates and reminders.

    void aDueDateWithoutTimeSendsDueDateTimeFalseAndGivesNoReminder() {
        TaskDraft draft(fixedClock());
        draft.setName(QStringLiteral("Task"));
        draft.setDueDate(now.addDays(1));
        draft.setIncludeDueTime(false);
        draft.setReminderEnabled(true);
        QCOMPARE(body(draft.buildRequest(allFields)),
                 QByteArray(R"({"due_date":1773230400000,"due_date_time":false,"name":"Task"})"));
        QCOMPARE(draft.reminderFireDate(), std::nullopt);
    }

    void aHiddenDueDateIsNotSentButTheReminderStillComputes() {
        TaskDraft draft(fixedClock());
        draft.setName(QStringLiteral("Task"));
        draft.setDueDate(now.addSecs(3600));
        draft.setReminderEnabled(true);
        QSet<DefaultField> visible = allFields;
        visible.remove(DefaultField::dueDate);
        QCOMPARE(body(draft.buildRequest(visible)), QByteArray(R"({"name":"Task"})"));
        QCOMPARE(draft.reminderFireDate(), now.addSecs(45 * 60));
    }

    void theDueDateIsTheMillisecondCountOfTheInstantInAnyZone() {
        TaskDraft draft(fixedClock());
        draft.setDueDate(QDateTime::fromMSecsSinceEpoch(-1'500, Qt::UTC));
        QCOMPARE(draft.buildRequest(allFields).dueDate, -1'500);
        draft.setDueDate(QDateTime(QDate(2026, 3, 10), QTime(14, 0, 0, 7), Qt::OffsetFromUTC, 2 * 3600));
        QCOMPARE(draft.buildRequest(allFields).dueDate, 1773144000007);
    }

    void aDueDateWithoutAMillisecondCountIsNotSentAndGivesNoReminder() {
        for (const QDateTime& dueDate : {QDateTime(), QDateTime(QDate(300'000'000, 1, 1), QTime(0, 0), Qt::UTC)}) {
            TaskDraft draft(fixedClock());
            draft.setName(QStringLiteral("Task"));
            draft.setDueDate(dueDate);
            draft.setReminderEnabled(true);
            QCOMPARE(body(draft.buildRequest(allFields)), QByteArray(R"({"name":"Task"})"));
            QCOMPARE(draft.reminderFireDate(), std::nullopt);
        }
    }

    void theReminderFiresTheLeadBeforeTheDueTime() {
        TaskDraft draft(fixedClock());
        draft.setDueDate(now.addSecs(2 * 3600));
        draft.setReminderEnabled(true);
        draft.setReminderLeadMinutes(90);
        QCOMPARE(draft.reminderFireDate(), now.addSecs(30 * 60));
    }

    void aLeadOfZeroFiresAtTheDueInstant() {
        TaskDraft draft(fixedClock());
        draft.setDueDate(now.addMSecs(1));
        draft.setReminderEnabled(true);
        draft.setReminderLeadMinutes(0);
        QCOMPARE(draft.reminderFireDate(), now.addMSecs(1));
    }

    void aReminderAtOrBeforeNowIsDropped() {
        TaskDraft draft(fixedClock());
        draft.setDueDate(now.addSecs(10 * 60));
        draft.setReminderEnabled(true);
        QCOMPARE(draft.reminderFireDate(), std::nullopt);
        draft.setDueDate(now.addSecs(15 * 60));
        QCOMPARE(draft.reminderFireDate(), std::nullopt);
        draft.setDueDate(now.addSecs(15 * 60).addMSecs(1));
        QCOMPARE(draft.reminderFireDate(), now.addMSecs(1));
    }

    void theReminderReadsTheClockEachTime() {
        QDateTime clockTime = now;
        TaskDraft draft([&clockTime] { return clockTime; });
        draft.setDueDate(now.addSecs(3600));
        draft.setReminderEnabled(true);
        QCOMPARE(draft.reminderFireDate(), now.addSecs(45 * 60));
        clockTime = now.addSecs(45 * 60);
        QCOMPARE(draft.reminderFireDate(), std::nullopt);
    }

    void noReminderUnlessEnabledAndDue() {
        TaskDraft draft(fixedClock());
        draft.setReminderEnabled(true);
        QCOMPARE(draft.reminderFireDate(), std::nullopt);
        draft.setDueDate(now.addDays(1));
        draft.setReminderEnabled(false);
        QCOMPARE(draft.reminderFireDate(), std::nullopt);
    }

    void aLeadBeyondTheMillisecondRangeGivesNoReminder() {
        TaskDraft draft(fixedClock());
        draft.setDueDate(now.addDays(1));
        draft.setReminderEnabled(true);
        for (qint64 lead : {std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min(),
                            std::numeric_limits<qint64>::min() / 60'000}) {
            draft.setReminderLeadMinutes(lead);
            QCOMPARE(draft.reminderFireDate(), std::nullopt);
        }
    }

    // Notifications, attachments, reset.

    void settersNotifyOnlyOnChange() {
        notifiesOnceForTheSameChangeTwice(&TaskDraft::nameChanged,
                                          [](TaskDraft& draft) { draft.setName(QStringLiteral("n")); });
        notifiesOnceForTheSameChangeTwice(&TaskDraft::descriptionTextChanged,
                                          [](TaskDraft& draft) { draft.setDescriptionText(QStringLiteral("d")); });
        notifiesOnceForTheSameChangeTwice(&TaskDraft::statusChanged,
                                          [](TaskDraft& draft) { draft.setStatus(QStringLiteral("open")); });
        notifiesOnceForTheSameChangeTwice(&TaskDraft::assigneesChanged, [](TaskDraft& draft) {
            draft.setAssignees({1, 2});
        });
        notifiesOnceForTheSameChangeTwice(&TaskDraft::priorityChanged, [](TaskDraft& draft) { draft.setPriority(3); });
        notifiesOnceForTheSameChangeTwice(&TaskDraft::dueDateChanged, [](TaskDraft& draft) { draft.setDueDate(now); });
        notifiesOnceForTheSameChangeTwice(&TaskDraft::includeDueTimeChanged,
                                          [](TaskDraft& draft) { draft.setIncludeDueTime(false); });
        notifiesOnceForTheSameChangeTwice(&TaskDraft::reminderEnabledChanged,
                                          [](TaskDraft& draft) { draft.setReminderEnabled(true); });
        notifiesOnceForTheSameChangeTwice(&TaskDraft::reminderLeadMinutesChanged,
                                          [](TaskDraft& draft) { draft.setReminderLeadMinutes(0); });
        notifiesOnceForTheSameChangeTwice(&TaskDraft::tagsChanged,
                                          [](TaskDraft& draft) { draft.setTags({QStringLiteral("t")}); });
        notifiesOnceForTheSameChangeTwice(&TaskDraft::customChanged, [](TaskDraft& draft) {
            draft.setCustom({{QStringLiteral("f"), CustomValue::checkbox(true)}});
        });
        const QList<StagedAttachment> attachments{attachment(QStringLiteral("a.png"))};
        notifiesOnceForTheSameChangeTwice(&TaskDraft::attachmentsChanged,
                                          [&attachments](TaskDraft& draft) { draft.setAttachments(attachments); });
    }

    void attachmentsAreAppendedInOrderAndAnEmptyAppendIsSilent() {
        TaskDraft draft(fixedClock());
        QSignalSpy changed(&draft, &TaskDraft::attachmentsChanged);
        const StagedAttachment first = attachment(QStringLiteral("1.png"));
        const StagedAttachment second = attachment(QStringLiteral("2.mov"));
        const StagedAttachment third = attachment(QStringLiteral("3.txt"));
        draft.appendAttachments({first});
        draft.appendAttachments({second, third});
        draft.appendAttachments({});
        QCOMPARE(draft.attachments(), QList<StagedAttachment>({first, second, third}));
        QCOMPARE(changed.count(), 2);
    }

    void removingAnAttachmentDropsOnlyItAndLeavesItsFile() {
        QTemporaryDir folder;
        const StagedAttachment kept = stagedFile(folder, QStringLiteral("kept.png"));
        const StagedAttachment other = attachment(QStringLiteral("other.png"));
        TaskDraft draft(fixedClock());
        draft.setAttachments({other, kept});
        QSignalSpy changed(&draft, &TaskDraft::attachmentsChanged);
        draft.removeAttachment(QUuid::createUuid());
        QCOMPARE(changed.count(), 0);
        draft.removeAttachment(kept.id);
        QCOMPARE(draft.attachments(), QList<StagedAttachment>({other}));
        QCOMPARE(changed.count(), 1);
        QVERIFY(QFile::exists(kept.fileURL.toLocalFile()));
    }

    void resetEmptiesEveryFieldTakesTheLeadAndLeavesFiles() {
        QTemporaryDir folder;
        const StagedAttachment kept = stagedFile(folder, QStringLiteral("kept.png"));
        TaskDraft draft(fixedClock());
        fill(draft);
        draft.setIncludeDueTime(false);
        draft.appendAttachments({kept});
        QSignalSpy attachmentsChanged(&draft, &TaskDraft::attachmentsChanged);
        draft.reset(30);
        QCOMPARE(draft.attachments(), QList<StagedAttachment>());
        QCOMPARE(attachmentsChanged.count(), 1);
        QVERIFY(QFile::exists(kept.fileURL.toLocalFile()));
        TaskDraft fresh(fixedClock());
        QCOMPARE(draft.buildRequest(allFields), fresh.buildRequest(allFields));
        QCOMPARE(draft.includeDueTime(), true);
        QCOMPARE(draft.reminderEnabled(), false);
        QCOMPARE(draft.reminderLeadMinutes(), 30);
        QCOMPARE(draft.dueDate(), std::nullopt);
    }

    void clearingListValuesKeepsAttachmentsAndTheRest() {
        TaskDraft draft(fixedClock());
        fill(draft);
        const QList<StagedAttachment> attachments = draft.attachments();
        QSignalSpy attachmentsChanged(&draft, &TaskDraft::attachmentsChanged);
        draft.clearListSpecificValues();
        QCOMPARE(draft.attachments(), attachments);
        QCOMPARE(attachmentsChanged.count(), 0);
        QCOMPARE(body(draft.buildRequest(allFields)),
                 QByteArray(R"({"due_date":1773151200000,"due_date_time":true,)"
                            R"("markdown_description":"Line one\nline two","name":"Write report","priority":2})"));
        QCOMPARE(draft.reminderFireDate(), now.addSecs(105 * 60));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TaskDraftTest)
#include "TaskDraftTest.moc"
