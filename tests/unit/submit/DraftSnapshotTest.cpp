#include "core/submit/DraftSnapshot.h"
#include "support/DraftTesting.h"
#include "support/TestMain.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace DraftTesting;

class DraftSnapshotTest : public QObject {
    Q_OBJECT

private slots:
    void aSnapshotPinsCopiesWithNewIdsInTheTemporaryFolder() {
        QTemporaryDir staged;
        const TemporaryFolderOverride temporary;
        TaskDraft draft(fixedClock());
        const QList<StagedAttachment> originals{stagedFile(staged, QStringLiteral("first.png")),
                                                stagedFile(staged, QStringLiteral("second clip.mov"))};
        draft.setAttachments(originals);
        const std::optional<SubmitJobPayload> payload = DraftSnapshot::snapshot(draft, QStringLiteral("L1"), allFields);
        QVERIFY(payload);
        QCOMPARE(payload->attachments.size(), originals.size());
        QCOMPARE(temporary.fileNames().size(), originals.size());
        for (qsizetype i = 0; i < originals.size(); ++i) {
            const StagedAttachment& original = originals.at(i);
            const StagedAttachment& copy = payload->attachments.at(i);
            QCOMPARE_NE(copy.id, original.id);
            QCOMPARE(copy.filename, original.filename);
            const QString copyName = QFileInfo(copy.fileURL.toLocalFile()).fileName();
            QVERIFY(temporary.fileNames().contains(copyName));
            const QRegularExpression pinnedName(
                QStringLiteral("^norvanebar-job-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}-") +
                QRegularExpression::escape(original.filename) + QLatin1Char('$'));
            QVERIFY2(pinnedName.match(copyName).hasMatch(), qPrintable(copyName));
            QCOMPARE(fileContents(copy.fileURL.toLocalFile()), original.filename.toUtf8());
        }
        QCOMPARE(draft.attachments(), originals);
    }

    void oneVanishedAttachmentGivesNoSnapshot() {
        QTemporaryDir staged;
        const TemporaryFolderOverride temporary;
        TaskDraft draft(fixedClock());
        draft.setName(QStringLiteral("Task"));
        const StagedAttachment gone = stagedFile(staged, QStringLiteral("gone.png"));
        draft.setAttachments(
            {stagedFile(staged, QStringLiteral("a.png")), gone, stagedFile(staged, QStringLiteral("b.png"))});
        QVERIFY(QFile::remove(gone.fileURL.toLocalFile()));
        QCOMPARE(DraftSnapshot::snapshot(draft, QStringLiteral("L1"), allFields), std::nullopt);
        // The other two were copied all the same, and their copies are left behind.
        QCOMPARE(temporary.fileNames().size(), 2);
    }

    void aSnapshotCarriesTheTrimmedNameTheRequestAndTheReminder() {
        const TemporaryFolderOverride temporary;
        TaskDraft draft(fixedClock());
        fill(draft);
        draft.setAttachments({});
        draft.setName(QStringLiteral(" \tWrite report\n"));
        const QSet<DefaultField> visible{DefaultField::status, DefaultField::tags};
        QCOMPARE(DraftSnapshot::snapshot(draft, QStringLiteral("L1"), visible),
                 (SubmitJobPayload{QStringLiteral("L1"),
                                   QStringLiteral("Write report"),
                                   draft.buildRequest(visible),
                                   {},
                                   now.addSecs(105 * 60)}));
    }

    void laterEditsDoNotReachASnapshot() {
        QTemporaryDir staged;
        const TemporaryFolderOverride temporary;
        QDateTime clockTime = now;
        TaskDraft draft([&clockTime] { return clockTime; });
        fill(draft);
        const StagedAttachment original = stagedFile(staged, QStringLiteral("notes.txt"));
        draft.setAttachments({original});
        const CreateTaskRequest request = draft.buildRequest(allFields);
        const std::optional<SubmitJobPayload> payload = DraftSnapshot::snapshot(draft, QStringLiteral("L1"), allFields);
        QVERIFY(payload);

        draft.setName(QStringLiteral("Next task"));
        draft.setTags({QStringLiteral("other")});
        draft.removeAttachment(original.id);
        QVERIFY(QFile::remove(original.fileURL.toLocalFile()));
        clockTime = now.addDays(1);
        draft.reset(0);

        QCOMPARE(payload->taskName, QStringLiteral("Write report"));
        QCOMPARE(payload->request, request);
        QCOMPARE(payload->reminderFireDate, now.addSecs(105 * 60));
        QCOMPARE(payload->attachments.size(), 1);
        QCOMPARE(fileContents(payload->attachments.at(0).fileURL.toLocalFile()), QByteArray("notes.txt"));
    }

    // Bulk jobs.

    void blankLinesOnlyGiveNoBulkPayload() {
        TaskDraft draft(fixedClock());
        QCOMPARE(DraftSnapshot::bulkSnapshot(draft, QStringLiteral("L1"), QStringLiteral(" \n\t\r\n\u2028 \u3000\n"),
                                             allFields),
                 std::nullopt);
        QCOMPARE(DraftSnapshot::bulkSnapshot(draft, QStringLiteral("L1"), QString(), allFields), std::nullopt);
    }

    void eachKindOfNewlineBreaksALineAndCrlfBreaksOnce() {
        TaskDraft draft(fixedClock());
        const std::optional<BulkSubmitJobPayload> payload = DraftSnapshot::bulkSnapshot(
            draft, QStringLiteral("L1"), QStringLiteral("a\r\nb\rc\nd\u0085e\u2028f\u2029g\vh\fi\r\n"), allFields);
        QVERIFY(payload);
        QCOMPARE(payload->taskNames, QList<QString>({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                                                     QStringLiteral("d"), QStringLiteral("e"), QStringLiteral("f"),
                                                     QStringLiteral("g"), QStringLiteral("h"), QStringLiteral("i")}));
    }

    void bulkLinesAreTrimmedKeepTheirOrderAndShareTheDraftsFields() {
        TaskDraft draft(fixedClock());
        fill(draft);
        QSet<DefaultField> visible{DefaultField::tags};
        const std::optional<BulkSubmitJobPayload> payload = DraftSnapshot::bulkSnapshot(
            draft, QStringLiteral("L1"), QStringLiteral("  second \u00a0\n\n\tfirst\r\n  \nthird part"), visible);
        QCOMPARE(payload, (BulkSubmitJobPayload{
                              QStringLiteral("L1"),
                              {QStringLiteral("second"), QStringLiteral("first"), QStringLiteral("third part")},
                              draft.buildRequest(visible)}));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(DraftSnapshotTest)
#include "DraftSnapshotTest.moc"
