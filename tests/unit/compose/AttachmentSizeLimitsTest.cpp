#include "core/compose/AttachmentSizeLimits.h"
#include "core/support/ByteCountText.h"
#include "support/TestMain.h"

#include <QTemporaryDir>
#include <QTest>
#include <cmath>

using namespace AttachmentSizeLimits;

namespace {
const QString tryShorter = QStringLiteral(" attachment limit. Try a shorter recording or lower quality.");
const QString upToOneGB = QStringLiteral(". Norvane allows up to 1 GB per attachment.");
} // namespace

namespace AttachmentSizeLimits {
// Found by QCOMPARE for readable failures.
char* toString(const ValidationResult& result) {
    QString text = QStringLiteral("ok");
    if (const auto* warning = std::get_if<Warning>(&result)) {
        text = QStringLiteral("warning %1: %2").arg(warning->sizeBytes).arg(warning->message);
    } else if (const auto* rejected = std::get_if<Rejected>(&result)) {
        text = QStringLiteral("rejected: ") + rejected->message;
    }
    return qstrdup(qPrintable(text));
}
} // namespace AttachmentSizeLimits

class AttachmentSizeLimitsTest : public QObject {
    Q_OBJECT

private slots:
    void theLimitsAreFiveHundredMebibytesAndNinetyThreePercentOfAGibibyte() {
        QCOMPARE(warningThreshold, 500LL * 1024 * 1024);
        QCOMPARE(hardLimit, static_cast<qint64>(0.93 * 1024 * 1024 * 1024));
    }

    void aSizeOfZeroIsEmpty() {
        QCOMPARE(validate(0), ValidationResult(Rejected{QStringLiteral("The file is empty.")}));
        QCOMPARE(validate(-1), ValidationResult(Rejected{QStringLiteral("The file is empty.")}));
    }

    void oneByteIsOk() { QCOMPARE(validate(1), ValidationResult(Ok{})); }

    void theWarningThresholdIsOkAndOneByteMoreWarns() {
        QCOMPARE(validate(524'288'000), ValidationResult(Ok{}));
        QCOMPARE(validate(524'288'001),
                 ValidationResult(Warning{524'288'001, QStringLiteral("This file is 524.3 MB") + upToOneGB}));
    }

    void theHardLimitWarnsAndOneByteMoreIsRejected() {
        QCOMPARE(validate(998'579'896),
                 ValidationResult(Warning{998'579'896, QStringLiteral("This file is 998.6 MB") + upToOneGB}));
        QCOMPARE(validate(998'579'897),
                 ValidationResult(
                     Rejected{QStringLiteral("This file is 998.6 MB, which exceeds Norvane's 998.6 MB") + tryShorter}));
    }

    void aRejectionOfTwoGigabytesSaysGB() {
        QCOMPARE(validate(2'000'000'000),
                 ValidationResult(
                     Rejected{QStringLiteral("This file is 2 GB, which exceeds Norvane's 998.6 MB") + tryShorter}));
    }

    void byteCounts_data() {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0LL << "0 MB";
        QTest::newRow("a byte") << 1LL << "0 MB";
        QTest::newRow("half a megabyte rounds up") << 50'000LL << "0.1 MB";
        QTest::newRow("one and a half megabytes") << 1'500'000LL << "1.5 MB";
        QTest::newRow("whole megabytes drop the point") << 12'000'000LL << "12 MB";
        QTest::newRow("above the warning threshold") << 524'288'001LL << "524.3 MB";
        QTest::newRow("the hard limit") << 998'579'896LL << "998.6 MB";
        QTest::newRow("just below rounding to 1000 MB") << 999'949'999LL << "999.9 MB";
        QTest::newRow("rounding to 1000 MB is a gigabyte") << 999'950'000LL << "1 GB";
        QTest::newRow("a decimal gigabyte") << 1'000'000'000LL << "1 GB";
        QTest::newRow("a gibibyte") << 1'073'741'824LL << "1.07 GB";
        QTest::newRow("one trailing zero dropped") << 1'100'000'000LL << "1.1 GB";
        QTest::newRow("two decimals rounded") << 12'345'678'901LL << "12.35 GB";
        QTest::newRow("negative") << -1'500'000LL << "-1.5 MB";
    }

    void byteCounts() {
        QFETCH(qint64, bytes);
        QFETCH(QString, text);
        QCOMPARE(formattedByteCount(bytes), text);
    }

    void durations_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0.0 << "0:00";
        QTest::newRow("59.4 rounds down") << 59.4 << "0:59";
        QTest::newRow("59.6 rounds to a minute") << 59.6 << "1:00";
        QTest::newRow("minutes and seconds") << 754.0 << "12:34";
        QTest::newRow("3599.4 stays below an hour") << 3599.4 << "59:59";
        QTest::newRow("3599.6 is compared after rounding") << 3599.6 << "1:00:00";
        QTest::newRow("hours, minutes and seconds") << 3661.0 << "1:01:01";
        QTest::newRow("ten hours") << 36'000.0 << "10:00:00";
        QTest::newRow("negative") << -5.0 << "0:00";
        QTest::newRow("slightly negative") << -0.4 << "0:00";
        QTest::newRow("not a number") << std::nan("") << "0:00";
    }

    void durations() {
        QFETCH(double, seconds);
        QFETCH(QString, text);
        QCOMPARE(formattedDuration(seconds), text);
    }

    void theSizeOfAFileIsReadFromTheFileSystem() {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("five.bin"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("12345"), 5);
        file.close();
        QCOMPARE(fileSize(QUrl::fromLocalFile(path)), std::optional<qint64>(5));
    }

    void aMissingFileOrARemoteURLHasNoSize() {
        QTemporaryDir folder;
        QCOMPARE(fileSize(QUrl::fromLocalFile(folder.filePath(QStringLiteral("missing")))), std::nullopt);
        QCOMPARE(fileSize(QUrl(QStringLiteral("https://example.com/a.png"))), std::nullopt);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AttachmentSizeLimitsTest)
#include "AttachmentSizeLimitsTest.moc"
