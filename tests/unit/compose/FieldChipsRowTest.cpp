#include "core/compose/FieldChipsRow.h"
#include "support/TestMain.h"

#include <QTest>

namespace {
const QSet<DefaultField> allFields{DefaultField::tags, DefaultField::priority, DefaultField::dueDate,
                                   DefaultField::assignee, DefaultField::status};

CustomField field(const QString& id, const QString& type) {
    return {.id = id, .name = QStringLiteral("Field ") + id, .type = type};
}

QStringList ids(const QList<ComposerFieldItem>& items) {
    QStringList result;
    for (const ComposerFieldItem& item : items) {
        result.append(item.id());
    }
    return result;
}
} // namespace

class FieldChipsRowTest : public QObject {
    Q_OBJECT

private slots:
    void itemIdsNameTheStandardFieldsWordOrTheCustomFieldsID() {
        QCOMPARE(ComposerFieldItem::defaultField(DefaultField::dueDate).id(), QStringLiteral("default-dueDate"));
        QCOMPARE(ComposerFieldItem::defaultField(DefaultField::status).id(), QStringLiteral("default-status"));
        QCOMPARE(ComposerFieldItem::customField(field(QStringLiteral("cf-7"), QStringLiteral("text"))).id(),
                 QStringLiteral("custom-cf-7"));
    }

    void standardFieldsComeInTheirFixedOrderWhateverTheSetsOrder() {
        QCOMPARE(ids(FieldChipsRow::items(allFields, false, {}, {})),
                 (QStringList{QStringLiteral("default-status"), QStringLiteral("default-assignee"),
                              QStringLiteral("default-dueDate"), QStringLiteral("default-priority"),
                              QStringLiteral("default-tags")}));
        QCOMPARE(ids(FieldChipsRow::items({DefaultField::tags, DefaultField::status}, false, {}, {})),
                 (QStringList{QStringLiteral("default-status"), QStringLiteral("default-tags")}));
    }

    void customFieldsFollowInTheListsOrderWhenShown() {
        const QList<CustomField> fields{field(QStringLiteral("b"), QStringLiteral("number")),
                                        field(QStringLiteral("a"), QStringLiteral("drop_down"))};
        QCOMPARE(
            ids(FieldChipsRow::items({DefaultField::priority}, true, fields, {})),
            (QStringList{QStringLiteral("default-priority"), QStringLiteral("custom-b"), QStringLiteral("custom-a")}));
        QCOMPARE(ids(FieldChipsRow::items({DefaultField::priority}, false, fields, {})),
                 QStringList{QStringLiteral("default-priority")});
    }

    void hiddenCustomFieldsAndTypesTheComposerCantEditStayOut() {
        const QList<CustomField> fields{field(QStringLiteral("shown"), QStringLiteral("checkbox")),
                                        field(QStringLiteral("hidden"), QStringLiteral("text")),
                                        field(QStringLiteral("formula"), QStringLiteral("formula"))};
        QCOMPARE(ids(FieldChipsRow::items({}, true, fields, {QStringLiteral("hidden")})),
                 QStringList{QStringLiteral("custom-shown")});
    }

    void withFiveItemsAllShowAndNothingIsBehindMore() {
        const QList<ComposerFieldItem> items = FieldChipsRow::items(allFields, true, {}, {});
        const FieldChipsRow::Split split = FieldChipsRow::split(items);
        QCOMPARE(split.shown, items);
        QVERIFY(split.more.isEmpty());
    }

    void withSixVisibleItemsTheSixthGoesIntoMoreNotTheFifth() {
        const QList<ComposerFieldItem> items =
            FieldChipsRow::items(allFields, true, {field(QStringLiteral("sixth"), QStringLiteral("url"))}, {});
        const FieldChipsRow::Split split = FieldChipsRow::split(items);
        QCOMPARE(ids(split.shown).last(), QStringLiteral("default-tags"));
        QCOMPARE(split.shown.size(), 5);
        QCOMPARE(ids(split.more), QStringList{QStringLiteral("custom-sixth")});
        QCOMPARE(FieldChipsRow::moreTitle(split.more.size()), QStringLiteral("More +1"));
    }

    void withManyItemsTheFirstFiveShowAndMoreCountsTheRest() {
        QList<CustomField> fields;
        for (int index = 0; index < 9; ++index) {
            fields.append(field(QString::number(index), QStringLiteral("email")));
        }
        const FieldChipsRow::Split split =
            FieldChipsRow::split(FieldChipsRow::items({DefaultField::dueDate}, true, fields, {}));
        QCOMPARE(ids(split.shown),
                 (QStringList{QStringLiteral("default-dueDate"), QStringLiteral("custom-0"), QStringLiteral("custom-1"),
                              QStringLiteral("custom-2"), QStringLiteral("custom-3")}));
        QCOMPARE(split.more.size(), 5);
        QCOMPARE(FieldChipsRow::moreTitle(split.more.size()), QStringLiteral("More +5"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(FieldChipsRowTest)
#include "FieldChipsRowTest.moc"
