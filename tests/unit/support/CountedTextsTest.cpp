#include "core/compose/FieldChipTitles.h"
#include "core/compose/ReminderLeads.h"
#include "core/settings/ReminderLeadTime.h"
#include "core/shell/StatusItemBadge.h"
#include "core/submit/TaskCounts.h"
#include "core/support/Translations.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTest>
#include <QXmlStreamReader>

namespace {
// `count` members or tags, each with a name of its own.
QList<Member> members(int count) {
    QList<Member> made;
    for (int index = 0; index < count; ++index) {
        made.append(Member{.id = index + 1, .username = QStringLiteral("member%1").arg(index + 1)});
    }
    return made;
}

QSet<qint64> ids(int count) {
    QSet<qint64> made;
    for (int index = 0; index < count; ++index) {
        made.insert(index + 1);
    }
    return made;
}

QSet<QString> names(int count) {
    QSet<QString> made;
    for (int index = 0; index < count; ++index) {
        made.insert(QStringLiteral("t%1").arg(index));
    }
    return made;
}
} // namespace

// Every text counted with %n reads in English as before, in the singular for one and in the
// plural for none, two and many, through the English catalogue the program loads.
class CountedTextsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(Translations::install(*QCoreApplication::instance())); }

    void counts_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("number");
        QTest::addColumn<bool>("one");
        QTest::newRow("none") << 0 << QStringLiteral("0") << false;
        QTest::newRow("one") << 1 << QStringLiteral("1") << true;
        QTest::newRow("two") << 2 << QStringLiteral("2") << false;
        QTest::newRow("many") << 1000 << QStringLiteral("1000") << false;
    }

    void counts() {
        QFETCH(int, count);
        QFETCH(QString, number);
        QFETCH(bool, one);
        const auto english = [&](const QString& singular, const QString& plural) {
            return number + (one ? singular : plural);
        };
        QCOMPARE(TaskCounts::created(count),
                 english(QStringLiteral(" task created"), QStringLiteral(" tasks created")));
        QCOMPARE(TaskCounts::failed(count), english(QStringLiteral(" task failed"), QStringLiteral(" tasks failed")));
        if (count > 0) {
            QCOMPARE(StatusItemBadge::make(count, 0, false).toolTip,
                     english(QStringLiteral(" background task in progress"),
                             QStringLiteral(" background tasks in progress")));
            QCOMPARE(ReminderLeads::label(count),
                     english(QStringLiteral(" min before"), QStringLiteral(" min before")));
            // Said "1 minutes before" before the count went through the catalogue.
            QCOMPARE(ReminderLeadTime::label(count),
                     english(QStringLiteral(" minute before"), QStringLiteral(" minutes before")));
        }
        if (count > 1) {
            // One assignee or tag is named instead of counted.
            QCOMPARE(FieldChipTitles::assignee(members(count), ids(count)),
                     english(QString(), QStringLiteral(" assignees")));
            QCOMPARE(FieldChipTitles::tags(names(count)), english(QString(), QStringLiteral(" tags")));
        }
        const CustomField labels{
            .id = QStringLiteral("f1"), .name = QStringLiteral("Effort"), .type = QStringLiteral("labels")};
        const FieldChipTitles::DateContext context{QDateTime::currentDateTimeUtc(), QTimeZone::utc(),
                                                   QLocale(QLocale::English)};
        QCOMPARE(FieldChipTitles::customField(labels, CustomValue::labels(names(count)), context),
                 count == 0 ? QStringLiteral("Effort")
                            : english(QStringLiteral(" selected"), QStringLiteral(" selected")));
    }

    // The texts of the desktop and the background queue, by their context, as the catalogue
    // answers them: the same words the view models and pages ask for.
    void theCatalogueAnswersEachCountedText_data() {
        QTest::addColumn<QByteArray>("context");
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QString>("singular");
        QTest::newRow("attachment strip")
            << QByteArray("AttachmentStripView") << QByteArray("%n attachments") << QStringLiteral("%1 attachment");
        QTest::newRow("done page") << QByteArray("SubmitViewModel") << QByteArray("%n attachments failed to upload")
                                   << QStringLiteral("%1 attachment failed to upload");
        QTest::newRow("notification") << QByteArray("NotificationScheduler")
                                      << QByteArray("%n attachments failed to upload")
                                      << QStringLiteral("%1 attachment failed to upload");
        QTest::newRow("background summary")
            << QByteArray("BackgroundSubmitQueue") << QByteArray("%n attachments failed. ")
            << QStringLiteral("%1 attachment failed. ");
        QTest::newRow("longest recording")
            << QByteArray("RecordingDefaultsViewModel") << QByteArray("%n minutes") << QStringLiteral("%1 minute");
    }

    void theCatalogueAnswersEachCountedText() {
        QFETCH(QByteArray, context);
        QFETCH(QByteArray, source);
        QFETCH(QString, singular);
        for (const int count : {0, 1, 2, 1000}) {
            const QString plural = QString::fromUtf8(source).replace(QStringLiteral("%n"), QString::number(count));
            QCOMPARE(QCoreApplication::translate(context.constData(), source.constData(), nullptr, count),
                     count == 1 ? singular.arg(count) : plural);
        }
    }

    // Each counted text of the English catalogue has its two English forms, the plural its source,
    // so a text counted with %n is never left to say "1 tasks".
    void everyCountedTextOfTheCatalogueHasBothForms() {
        QFile catalogue(QStringLiteral(NORVANEBAR_ENGLISH_CATALOGUE));
        QVERIFY(catalogue.open(QIODevice::ReadOnly));
        QXmlStreamReader reader(&catalogue);
        int counted = 0;
        QString source;
        QStringList forms;
        bool numerus = false;
        while (!reader.atEnd()) {
            reader.readNext();
            if (reader.isEndElement() && reader.name() == u"message" && numerus) {
                QCOMPARE(forms.size(), 2);
                QVERIFY2(!forms[0].isEmpty(), qPrintable(source));
                QCOMPARE(forms[1], source);
                ++counted;
            }
            if (!reader.isStartElement()) {
                continue;
            }
            if (reader.name() == u"message") {
                numerus = reader.attributes().value(QLatin1String("numerus")) == u"yes";
                forms.clear();
            } else if (reader.name() == u"source") {
                source = reader.readElementText();
            } else if (reader.name() == u"translation" && numerus) {
                QVERIFY2(reader.attributes().value(QLatin1String("type")).isEmpty(), qPrintable(source));
            } else if (reader.name() == u"numerusform") {
                forms.append(reader.readElementText());
            }
        }
        QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
        QCOMPARE(counted, 13);
    }

    void oneAndNoneSayWhatTheyDidBefore() {
        QCOMPARE(StatusItemBadge::make(0, 0, false).toolTip, QStringLiteral("NorvaneBar — new Norvane task"));
        QCOMPARE(ReminderLeads::label(0), QStringLiteral("At due time"));
        QCOMPARE(ReminderLeadTime::label(0), QStringLiteral("At due time"));
        QCOMPARE(FieldChipTitles::assignee(members(1), ids(1)), QStringLiteral("member1"));
        QCOMPARE(FieldChipTitles::tags(names(1)), QStringLiteral("t0"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(CountedTextsTest)
#include "CountedTextsTest.moc"
