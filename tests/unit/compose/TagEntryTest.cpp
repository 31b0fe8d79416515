#include "core/compose/TagEntry.h"
#include "core/compose/TaskDraft.h"
#include "support/TestMain.h"

#include <QTest>

class TagEntryTest : public QObject {
    Q_OBJECT

private slots:
    void aTagLosesTheSpacesAndTabsAroundIt() {
        QSet<QString> tags;
        QVERIFY(TagEntry::addTag(tags, QStringLiteral(" \tfront end\t ")));
        QCOMPARE(tags, QSet<QString>{QStringLiteral("front end")});
    }

    void onlySpacesAndTabsAddNothing() {
        QSet<QString> tags{QStringLiteral("kept")};
        QVERIFY(!TagEntry::addTag(tags, QStringLiteral(" \t ")));
        QVERIFY(!TagEntry::addTag(tags, QString()));
        QCOMPARE(tags, QSet<QString>{QStringLiteral("kept")});
    }

    void newlinesAreNotTrimmed() {
        QSet<QString> tags;
        QVERIFY(TagEntry::addTag(tags, QStringLiteral("\n")));
        QCOMPARE(tags, QSet<QString>{QStringLiteral("\n")});
    }

    void tagsTypedWithCapitalsStayAsTypedAndTheRequestCarriesThem() {
        QSet<QString> tags{QStringLiteral("backend")};
        QVERIFY(TagEntry::addTag(tags, QStringLiteral("Backend")));
        QVERIFY(TagEntry::addTag(tags, QStringLiteral("URGENT")));
        QCOMPARE(tags, (QSet<QString>{QStringLiteral("backend"), QStringLiteral("Backend"), QStringLiteral("URGENT")}));
        TaskDraft draft;
        draft.setTags(tags);
        QCOMPARE(draft.buildRequest({DefaultField::tags}).tags,
                 (QList<QString>{QStringLiteral("Backend"), QStringLiteral("URGENT"), QStringLiteral("backend")}));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TagEntryTest)
#include "TagEntryTest.moc"
