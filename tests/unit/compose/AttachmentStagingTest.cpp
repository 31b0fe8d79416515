#include "core/compose/AttachmentStaging.h"
#include "core/compose/AttachmentSizeLimits.h"
#include "support/TestMain.h"

#include "support/TemporaryFolderTesting.h"

#include <QBuffer>
#include <QImageReader>
#include <QLocale>
#include <QMimeData>
#include <QRegularExpression>
#include <QTest>

namespace {
const QString uuidPattern = QStringLiteral("[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}");
const QString timestampPattern = QStringLiteral("\\d{4}-\\d\\d-\\d\\d at \\d\\d\\.\\d\\d\\.\\d\\d");

QImage redSquare() {
    QImage image(4, 4, QImage::Format_ARGB32);
    image.fill(Qt::red);
    return image;
}

QByteArray pngBytes(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

bool matches(const QString& pattern, const QString& text) {
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text).hasMatch();
}

// The file name of a staged file directly in the temporary directory; fails the test elsewhere.
QString nameInTemporaryDirectory(const StagedAttachment& attachment) {
    const QFileInfo info(attachment.fileURL.toLocalFile());
    return info.absolutePath() == QDir::tempPath() ? info.fileName() : QString();
}
} // namespace

class AttachmentStagingTest : public QObject {
    Q_OBJECT

    std::optional<TemporaryFolderOverride> m_temporary;

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void init() { m_temporary.emplace(); }
    void cleanup() { m_temporary.reset(); }

    // The extensions.

    void theExtensionSetsHoldTheCommonImageAndVideoTypes() {
        QCOMPARE(AttachmentStaging::imageExtensions,
                 QSet<QString>({"png", "jpg", "jpeg", "gif", "heic", "tiff", "webp", "bmp"}));
        QCOMPARE(AttachmentStaging::videoExtensions, QSet<QString>({"mov", "mp4", "m4v"}));
    }

    void anUpperCasePNGExtensionCountsAsAnImage() {
        const auto staged = AttachmentStaging::stage(QUrl::fromLocalFile(m_temporary->writeOutside("Shot.PNG", "png")));
        QVERIFY(staged);
        QVERIFY(staged->isImage);
        QVERIFY(!staged->isVideo);
    }

    void aMixedCaseVideoExtensionCountsAsAVideo() {
        const auto staged = AttachmentStaging::stage(QUrl::fromLocalFile(m_temporary->writeOutside("Clip.M4v", "m")));
        QVERIFY(staged);
        QVERIFY(!staged->isImage);
        QVERIFY(staged->isVideo);
    }

    void aFileWithoutAKnownExtensionIsNeitherImageNorVideo() {
        for (const QString& name : {QStringLiteral("notes.txt"), QStringLiteral("README")}) {
            const auto staged = AttachmentStaging::stage(QUrl::fromLocalFile(m_temporary->writeOutside(name, "x")));
            QVERIFY(staged);
            QVERIFY(!staged->isImage);
            QVERIFY(!staged->isVideo);
        }
    }

    // Files given by URL.

    void aFileGivenByURLIsStagedWhereItLies() {
        const QUrl url = QUrl::fromLocalFile(m_temporary->writeOutside("report.pdf", "12345"));
        const auto staged = AttachmentStaging::stage(url);
        QVERIFY(staged);
        QVERIFY(!staged->id.isNull());
        QCOMPARE(staged->fileURL, url);
        QCOMPARE(staged->filename, QStringLiteral("report.pdf"));
        QCOMPARE(staged->fileSizeBytes, std::optional<qint64>(5));
        QCOMPARE(staged->durationSeconds, std::nullopt);
        QCOMPARE(m_temporary->fileNames(), QStringList());
    }

    void eachStagingOfAFileHasANewId() {
        const QUrl url = QUrl::fromLocalFile(m_temporary->writeOutside("a.txt", "a"));
        QCOMPARE_NE(AttachmentStaging::stage(url)->id, AttachmentStaging::stage(url)->id);
    }

    void aMissingFileOrARemoteURLGivesNothing() {
        QCOMPARE(AttachmentStaging::stage(QUrl::fromLocalFile(QDir::temp().filePath("missing.png"))), std::nullopt);
        QCOMPARE(AttachmentStaging::stage(QUrl(QStringLiteral("https://example.com/a.png"))), std::nullopt);
    }

    // Pasted data.

    void aPasteboardWithAMissingFileURLAndAnImageGivesNothingAndLeavesTheImageUnused() {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QDir::temp().filePath("missing.png"))});
        data.setImageData(redSquare());
        QCOMPARE(AttachmentStaging::stage(data), QList<StagedAttachment>());
        QCOMPARE(m_temporary->fileNames(), QStringList());
    }

    void aPasteboardStagesItsExistingFilesInOrderAndSkipsTheOthers() {
        const QUrl first = QUrl::fromLocalFile(m_temporary->writeOutside("b.txt", "b"));
        const QUrl second = QUrl::fromLocalFile(m_temporary->writeOutside("a.mov", "a"));
        QMimeData data;
        data.setUrls({first, QUrl::fromLocalFile(QDir::temp().filePath("missing.txt")),
                      QUrl(QStringLiteral("https://example.com/c.png")), second});
        const QList<StagedAttachment> staged = AttachmentStaging::stage(data);
        QCOMPARE(staged.size(), 2);
        QCOMPARE(staged[0].fileURL, first);
        QCOMPARE(staged[1].fileURL, second);
        QVERIFY(staged[1].isVideo);
    }

    void aPasteboardImageIsStagedWithoutANameWhenThereIsNoFileURL() {
        QMimeData data;
        data.setUrls({QUrl(QStringLiteral("https://example.com/page"))});
        data.setImageData(redSquare());
        const QList<StagedAttachment> staged = AttachmentStaging::stage(data);
        QCOMPARE(staged.size(), 1);
        QVERIFY(
            matches(QStringLiteral("Pasted image ") + timestampPattern + QStringLiteral("\\.png"), staged[0].filename));
        QVERIFY(staged[0].isImage);
        QCOMPARE(m_temporary->fileNames(), QStringList{nameInTemporaryDirectory(staged[0])});
    }

    void encodedImageBytesOnAPasteboardAreDecoded() {
        QMimeData data;
        data.setData(QStringLiteral("image/png"), pngBytes(redSquare()));
        const QList<StagedAttachment> staged = AttachmentStaging::stage(data);
        QCOMPARE(staged.size(), 1);
        QCOMPARE(QImage(staged[0].fileURL.toLocalFile()).pixelColor(0, 0), QColor(Qt::red));
    }

    void aPasteboardWithNeitherFilesNorAnImageGivesNothing() {
        QMimeData data;
        data.setText(QStringLiteral("just text"));
        data.setData(QStringLiteral("image/png"), "not an image");
        QCOMPARE(AttachmentStaging::stage(data), QList<StagedAttachment>());
        QCOMPARE(m_temporary->fileNames(), QStringList());
    }

    // Images from memory.

    void anImageIsWrittenAsAPNGNamedAfterItsIdInTheTemporaryDirectory() {
        const auto staged = AttachmentStaging::stage(redSquare(), QStringLiteral("shot.png"));
        QVERIFY(staged);
        const QString uuid = staged->id.toString(QUuid::WithoutBraces).toUpper();
        QCOMPARE(nameInTemporaryDirectory(*staged), QStringLiteral("norvanebar-") + uuid + QStringLiteral("-shot.png"));
        QVERIFY(matches(uuidPattern, uuid));
        QCOMPARE(staged->filename, QStringLiteral("shot.png"));
        QVERIFY(staged->isImage);
        QVERIFY(!staged->isVideo);
        QCOMPARE(staged->fileSizeBytes, std::nullopt);
        QCOMPARE(staged->durationSeconds, std::nullopt);
        QImageReader reader(staged->fileURL.toLocalFile());
        QCOMPARE(reader.format(), QByteArray("png"));
        const QImage written = reader.read();
        QCOMPARE(written.size(), QSize(4, 4));
        QCOMPARE(written.pixelColor(3, 3), QColor(Qt::red));
    }

    void aNullImageGivesNothing() {
        QCOMPARE(AttachmentStaging::stage(QImage(), QStringLiteral("a.png")), std::nullopt);
        QCOMPARE(m_temporary->fileNames(), QStringList());
    }

    void anImageThatCannotBeWrittenGivesNothingAndLeavesNoFile() {
        QCOMPARE(AttachmentStaging::stage(redSquare(), QStringLiteral("no-such-folder/a.png")), std::nullopt);
        QCOMPARE(m_temporary->fileNames(), QStringList());
    }

    void timestampedNamesAreInLocalTime() {
        const QDateTime now(QDate(2024, 3, 5), QTime(14, 7, 9));
        QCOMPARE(AttachmentStaging::timestampedName(now), QStringLiteral("Pasted image 2024-03-05 at 14.07.09.png"));
        QCOMPARE(AttachmentStaging::timestampedRecordingName(now.toUTC()),
                 QStringLiteral("Screen Recording 2024-03-05 at 14.07.09.mov"));
    }

    // Recordings.

    void aMovedRecordingTakesItsTemporaryName() {
        const QString source = m_temporary->writeOutside("capture.mp4", "movie");
        const auto staged = AttachmentStaging::stage(QUrl::fromLocalFile(source), 12.5, true);
        QVERIFY(staged);
        QVERIFY(matches(QStringLiteral("norvanebar-recording-") + uuidPattern + QStringLiteral("\\.mov"),
                        nameInTemporaryDirectory(*staged)));
        QVERIFY(matches(QStringLiteral("Screen Recording ") + timestampPattern + QStringLiteral("\\.mov"),
                        staged->filename));
        QVERIFY(!QFile::exists(source));
        QCOMPARE(fileContents(staged->fileURL.toLocalFile()), QByteArray("movie"));
        QVERIFY(!staged->isImage);
        QVERIFY(staged->isVideo);
        QCOMPARE(staged->fileSizeBytes, std::optional<qint64>(5));
        QCOMPARE(staged->durationSeconds, std::optional<double>(12.5));
    }

    void aCopiedRecordingKeepsTheOriginal() {
        const QString source = m_temporary->writeOutside("capture.mov", "movie");
        const auto staged = AttachmentStaging::stage(QUrl::fromLocalFile(source), 3, false);
        QVERIFY(staged);
        QVERIFY(QFile::exists(source));
        QCOMPARE(m_temporary->fileNames(), QStringList{nameInTemporaryDirectory(*staged)});
        QCOMPARE(fileContents(staged->fileURL.toLocalFile()), QByteArray("movie"));
    }

    void aRecordingAboveTheWarningThresholdIsStaged() {
        const QString source = sparseFile(QDir::temp().filePath("big.mov"), AttachmentSizeLimits::warningThreshold + 1);
        const auto staged = AttachmentStaging::stage(QUrl::fromLocalFile(source), 600, true);
        QVERIFY(staged);
        QCOMPARE(staged->fileSizeBytes, std::optional<qint64>(AttachmentSizeLimits::warningThreshold + 1));
    }

    void aRecordingAboveTheHardLimitGivesNothing() {
        const QString source = sparseFile(QDir::temp().filePath("huge.mov"), AttachmentSizeLimits::hardLimit + 1);
        QCOMPARE(AttachmentStaging::stage(QUrl::fromLocalFile(source), 600, true), std::nullopt);
        QCOMPARE(m_temporary->fileNames(), QStringList{QStringLiteral("huge.mov")});
    }

    void anEmptyOrMissingRecordingGivesNothing() {
        const QString empty = m_temporary->writeOutside("empty.mov", QByteArray());
        QCOMPARE(AttachmentStaging::stage(QUrl::fromLocalFile(empty), 1, true), std::nullopt);
        QVERIFY(QFile::exists(empty));
        QCOMPARE(AttachmentStaging::stage(QUrl::fromLocalFile(QDir::temp().filePath("missing.mov")), 1, true),
                 std::nullopt);
        QCOMPARE(m_temporary->fileNames(), QStringList());
    }

    // Copies pinned for a background job.

    void aPinnedCopyHasANewIdTheCopysSizeAndKeepsTheRest() {
        const StagedAttachment attachment{.id = QUuid::createUuid(),
                                          .fileURL = QUrl::fromLocalFile(m_temporary->writeOutside("x.bin", "1234")),
                                          .filename = QStringLiteral("Clip one.mov"),
                                          .isImage = false,
                                          .isVideo = true,
                                          .fileSizeBytes = 99,
                                          .durationSeconds = 7.25};
        const auto pinned = AttachmentStaging::pinForBackgroundJob(attachment);
        QVERIFY(pinned);
        QVERIFY(matches(QStringLiteral("norvanebar-job-") + uuidPattern + QStringLiteral("-Clip one\\.mov"),
                        nameInTemporaryDirectory(*pinned)));
        QVERIFY(!pinned->id.isNull());
        QCOMPARE_NE(pinned->id, attachment.id);
        QCOMPARE(fileContents(pinned->fileURL.toLocalFile()), QByteArray("1234"));
        QCOMPARE(pinned->fileSizeBytes, std::optional<qint64>(4));
        StagedAttachment kept = *pinned;
        kept.id = attachment.id;
        kept.fileURL = attachment.fileURL;
        kept.fileSizeBytes = attachment.fileSizeBytes;
        QCOMPARE(kept, attachment);
        QVERIFY(QFile::exists(attachment.fileURL.toLocalFile()));
    }

    void eachPinnedCopyIsANewFile() {
        const auto staged = AttachmentStaging::stage(QUrl::fromLocalFile(m_temporary->writeOutside("a.png", "a")));
        QVERIFY(staged);
        const auto first = AttachmentStaging::pinForBackgroundJob(*staged);
        const auto second = AttachmentStaging::pinForBackgroundJob(*staged);
        QVERIFY(first && second);
        QCOMPARE_NE(first->fileURL, second->fileURL);
        QCOMPARE(m_temporary->fileNames().size(), 2);
    }

    void aVanishedSourceCannotBePinned() {
        const QString path = m_temporary->writeOutside("gone.png", "a");
        const auto staged = AttachmentStaging::stage(QUrl::fromLocalFile(path));
        QVERIFY(staged);
        QVERIFY(QFile::remove(path));
        QCOMPARE(AttachmentStaging::pinForBackgroundJob(*staged), std::nullopt);
        QCOMPARE(m_temporary->fileNames(), QStringList());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AttachmentStagingTest)
#include "AttachmentStagingTest.moc"
