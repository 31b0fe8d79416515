#include "core/support/Translations.h"
#include "core/api/NVError.h"
#include "core/hierarchy/ListContext.h"
#include "core/submit/TaskCounts.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTest>
#include <QTranslator>

namespace {
// Answers one text of one context with its own words, as a catalogue installed later would.
class OneTextTranslator : public QTranslator {
public:
    OneTextTranslator(const char* context, const char* source, QString answer)
        : m_context(context)
        , m_source(source)
        , m_answer(std::move(answer)) {}

    QString translate(const char* context, const char* sourceText, const char* /*disambiguation*/,
                      int /*n*/) const override {
        return qstrcmp(context, m_context) == 0 && qstrcmp(sourceText, m_source) == 0 ? m_answer : QString();
    }
    bool isEmpty() const override { return false; }

private:
    const char* m_context;
    const char* m_source;
    QString m_answer;
};

// The text of `read` before, while and after a translator of its source is installed.
QStringList acrossATranslator(const std::function<QString()>& read, const char* context, const char* source) {
    QStringList seen{read()};
    OneTextTranslator translator(context, source, QStringLiteral("Übersetzt"));
    QCoreApplication::installTranslator(&translator);
    seen.append(read());
    QCoreApplication::removeTranslator(&translator);
    seen.append(read());
    return seen;
}
} // namespace

// The program's catalogues: the English one is in the core's resources, gives the English singular
// and plural of each text counted with %n once installed, and a text is translated at each use, so
// a catalogue installed after the first use is seen.
class TranslationsTest : public QObject {
    Q_OBJECT

private slots:
    // Runs first, before anything is installed: the sources alone say the plural even for one.
    void withoutTheCatalogueACountedTextReadsAsItsSource() {
        QCOMPARE(TaskCounts::created(1), QStringLiteral("1 tasks created"));
    }

    void theEnglishCatalogueIsInTheCoresResourcesWithBothForms() {
        QVERIFY(QFile::exists(QStringLiteral(":/i18n/norvanebar_en.qm")));
        QTranslator english;
        QVERIFY(english.load(QStringLiteral(":/i18n/norvanebar_en.qm")));
        QCOMPARE(english.language(), QStringLiteral("en"));
        QCOMPARE(english.translate("TaskCounts", "%n tasks created", nullptr, 1), QStringLiteral("%n task created"));
        QCOMPARE(english.translate("TaskCounts", "%n tasks created", nullptr, 2), QStringLiteral("%n tasks created"));
        QCOMPARE(english.translate("TaskCounts", "%n tasks created", nullptr, 0), QStringLiteral("%n tasks created"));
    }

    void installingResolvesTheCountedFormsOnTheApplication() {
        // A language without a catalogue of its own keeps the English one.
        QVERIFY(Translations::install(*QCoreApplication::instance(), QLocale(QLocale::German, QLocale::Germany)));
        QCOMPARE(TaskCounts::created(1), QStringLiteral("1 task created"));
        QCOMPARE(TaskCounts::created(2), QStringLiteral("2 tasks created"));
        QCOMPARE(QCoreApplication::translate("TaskCounts", "%n tasks failed", nullptr, 1),
                 QStringLiteral("1 task failed"));
        // Texts without a count read as their sources.
        QCOMPARE(ListContext::loadFailedText(), QStringLiteral("Couldn't load list details. Check your connection."));
    }

    void aCatalogueInstalledAfterTheFirstUseIsSeenAtTheNext() {
        QCOMPARE(acrossATranslator(&ListContext::loadFailedText, "ListContext",
                                   "Couldn't load list details. Check your connection."),
                 (QStringList{QStringLiteral("Couldn't load list details. Check your connection."),
                              QStringLiteral("Übersetzt"),
                              QStringLiteral("Couldn't load list details. Check your connection.")}));
        QCOMPARE(acrossATranslator(&NVError::rejectedTokenText, "NVError",
                                   "Norvane rejected the API token. Check it in Settings."),
                 (QStringList{QStringLiteral("Norvane rejected the API token. Check it in Settings."),
                              QStringLiteral("Übersetzt"),
                              QStringLiteral("Norvane rejected the API token. Check it in Settings.")}));
        // The description of a rejected token, which the sign-in shows, follows as well.
        QCOMPARE(acrossATranslator([] { return NVError(NVError::Unauthorized{}).errorDescription(); }, "NVError",
                                   "Norvane rejected the API token. Check it in Settings.")
                     .value(1),
                 QStringLiteral("Übersetzt"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TranslationsTest)
#include "TranslationsTest.moc"
