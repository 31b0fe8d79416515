#include "core/compose/FieldChipTitles.h"
#include "core/compose/TaskDraft.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
const QTimeZone berlin("Europe/Berlin");
// 25 November 2026, 11:00 in Berlin.
const QDateTime now(QDate(2026, 11, 25), QTime(10, 0), Qt::UTC);
const FieldChipTitles::DateContext context{now, berlin, QLocale(QLocale::English, QLocale::UnitedStates)};

QDateTime berlinTime(int month, int day, int hour, int minute = 0) {
    return QDateTime(QDate(2026, month, day), QTime(hour, minute), berlin).toUTC();
}

Member member(qint64 id, const QString& username) {
    return {.id = id, .username = username};
}

CustomField field(const QString& type, QList<CustomField::TypeConfig::Option> options = {}) {
    return {.id = QStringLiteral("cf"),
            .name = QStringLiteral("Effort"),
            .type = type,
            .typeConfig = CustomField::TypeConfig{.options = std::move(options)}};
}
} // namespace

class FieldChipTitlesTest : public QObject {
    Q_OBJECT

private slots:
    void statusShowsTheChosenStatusOrSaysStatus() {
        QCOMPARE(FieldChipTitles::status(std::nullopt), QStringLiteral("Status"));
        QCOMPARE(FieldChipTitles::status(QStringLiteral("in review")), QStringLiteral("in review"));
    }

    void assigneeNamesOneMemberAndCountsMore() {
        const QList<Member> members{member(1, QStringLiteral("Ada")), member(2, QStringLiteral("Bo")),
                                    member(3, QStringLiteral("Cy"))};
        QCOMPARE(FieldChipTitles::assignee(members, {}), QStringLiteral("Assignee"));
        QCOMPARE(FieldChipTitles::assignee(members, {2}), QStringLiteral("Bo"));
        QCOMPARE(FieldChipTitles::assignee(members, {1, 3}), QStringLiteral("2 assignees"));
    }

    void anAssigneeWhoIsNotAMemberOfTheListDoesNotCount() {
        const QList<Member> members{member(1, QStringLiteral("Ada")), member(2, QStringLiteral("Bo"))};
        QCOMPARE(FieldChipTitles::assignee(members, {2, 99}), QStringLiteral("Bo"));
        QCOMPARE(FieldChipTitles::assignee(members, {98, 99}), QStringLiteral("Assignee"));
    }

    void anAssigneeChosenBeforeAListChangeIsGoneAfterIt() {
        const QList<Member> members{member(1, QStringLiteral("Ada"))};
        TaskDraft draft;
        draft.setAssignees({1});
        QCOMPARE(FieldChipTitles::assignee(members, draft.assignees()), QStringLiteral("Ada"));
        // What choosing another list does to the draft.
        draft.clearListSpecificValues();
        QVERIFY(draft.assignees().isEmpty());
        QCOMPARE(FieldChipTitles::assignee(members, draft.assignees()), QStringLiteral("Assignee"));
    }

    void aMemberWithABlankUserNameIsListedByEmailOrElseById() {
        QCOMPARE(FieldChipTitles::memberEntry({7, QStringLiteral("Ben"), QStringLiteral("ben@example.com")}),
                 QStringLiteral("Ben"));
        QCOMPARE(FieldChipTitles::memberEntry({7, QStringLiteral(" "), QStringLiteral("ben@example.com")}),
                 QStringLiteral("ben@example.com"));
        QCOMPARE(FieldChipTitles::memberEntry({7, QString(), std::nullopt}), QStringLiteral("User 7"));
        QCOMPARE(FieldChipTitles::memberEntry({7, std::nullopt, std::nullopt}), QStringLiteral("User 7"));
    }

    void dueDateSaysDueDateWithoutADate() {
        QCOMPARE(FieldChipTitles::dueDate(std::nullopt, true, true, context), QStringLiteral("Due date"));
    }

    void dueDateReadsTodayAndTomorrowRelatively() {
        QCOMPARE(FieldChipTitles::dueDate(berlinTime(11, 25, 17), false, false, context), QStringLiteral("Today"));
        QCOMPARE(FieldChipTitles::dueDate(berlinTime(11, 26, 0, 30), false, false, context),
                 QStringLiteral("Tomorrow"));
        QCOMPARE(FieldChipTitles::dueDate(berlinTime(11, 24, 9), false, false, context), QStringLiteral("Yesterday"));
    }

    void dueDateFurtherAwayIsAMediumDateInTheUsersLocale() {
        QCOMPARE(FieldChipTitles::dueDate(berlinTime(12, 3, 9), false, false, context), QStringLiteral("Dec 3, 2026"));
        const FieldChipTitles::DateContext german{now, berlin, QLocale(QLocale::German, QLocale::Germany)};
        QCOMPARE(FieldChipTitles::dueDate(berlinTime(12, 3, 9), false, false, german), QStringLiteral("3. Dez. 2026"));
    }

    void dueDateShowsTheShortTimeOnlyWithIncludeDueTime() {
        const QString time = context.locale.toString(QTime(17, 0), QLocale::ShortFormat);
        QCOMPARE(FieldChipTitles::dueDate(berlinTime(11, 26, 17), true, false, context),
                 QStringLiteral("Tomorrow at ") + time);
        QVERIFY(time.startsWith(QStringLiteral("5:00")));
    }

    void aDueTimeNeverShowsSecondsEvenWhereTheShortTimeHasThem() {
        const FieldChipTitles::DateContext plain{now, berlin, QLocale::c()};
        QVERIFY(QLocale::c().timeFormat(QLocale::ShortFormat).contains(QStringLiteral("ss")));
        QCOMPARE(FieldChipTitles::dueDate(berlinTime(11, 26, 9), true, false, plain),
                 QStringLiteral("Tomorrow at 09:00"));
    }

    void theAlarmMarkShowsForAReminderOnADateWithTime() {
        const QString title = FieldChipTitles::dueDate(berlinTime(11, 26, 17), true, true, context);
        QVERIFY2(title.endsWith(QStringLiteral(" ⏰")), qPrintable(title));
    }

    void theAlarmMarkDoesNotShowForAReminderOnADateWithoutTime() {
        QCOMPARE(FieldChipTitles::dueDate(berlinTime(11, 26, 17), false, true, context), QStringLiteral("Tomorrow"));
    }

    void tagsSayTagsNameOneAndCountMore() {
        QCOMPARE(FieldChipTitles::tags({}), QStringLiteral("Tags"));
        QCOMPARE(FieldChipTitles::tags({QStringLiteral("Backend")}), QStringLiteral("Backend"));
        QCOMPARE(FieldChipTitles::tags({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}),
                 QStringLiteral("3 tags"));
    }

    void aDropdownSaysNotSetOrTheChosenOptionBesideTheFieldName() {
        const CustomField dropdown =
            field(QStringLiteral("drop_down"), {{.id = QStringLiteral("o1"), .name = QStringLiteral("Large")}});
        QCOMPARE(FieldChipTitles::customField(dropdown, std::nullopt, context), QStringLiteral("Effort: Not set"));
        QCOMPARE(FieldChipTitles::customField(dropdown, CustomValue::option(QStringLiteral("o1")), context),
                 QStringLiteral("Effort: Large"));
    }

    void labelsShowTheFieldNameOrHowManyAreSelected() {
        const CustomField labels = field(QStringLiteral("labels"));
        QCOMPARE(FieldChipTitles::customField(labels, std::nullopt, context), QStringLiteral("Effort"));
        QCOMPARE(FieldChipTitles::customField(labels, CustomValue::labels({QStringLiteral("a"), QStringLiteral("b")}),
                                              context),
                 QStringLiteral("2 selected"));
    }

    void aCheckboxReadsCheckedOrUnchecked() {
        const CustomField checkbox = field(QStringLiteral("checkbox"));
        QCOMPARE(FieldChipTitles::customField(checkbox, std::nullopt, context), QStringLiteral("Unchecked"));
        QCOMPARE(FieldChipTitles::customField(checkbox, CustomValue::checkbox(true), context),
                 QStringLiteral("Checked"));
    }

    void aDateFieldShowsItsNameOrTheDate() {
        const CustomField date = field(QStringLiteral("date"));
        QCOMPARE(FieldChipTitles::customField(date, std::nullopt, context), QStringLiteral("Effort"));
        QCOMPARE(FieldChipTitles::customField(date, CustomValue::date(berlinTime(11, 25, 8)), context),
                 QStringLiteral("Today"));
    }

    void textAndNumberFieldsShowWhatWasTypedOrNotSet() {
        QCOMPARE(FieldChipTitles::customField(field(QStringLiteral("url")), std::nullopt, context),
                 QStringLiteral("Not set"));
        QCOMPARE(FieldChipTitles::customField(field(QStringLiteral("number")),
                                              CustomValue::number(QStringLiteral("12")), context),
                 QStringLiteral("12"));
        QCOMPARE(FieldChipTitles::customField(field(QStringLiteral("text")),
                                              CustomValue::text(QStringLiteral("<b>x</b> & y")), context),
                 QStringLiteral("<b>x</b> & y"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(FieldChipTitlesTest)
#include "FieldChipTitlesTest.moc"
