#include "core/api/Multipart.h"
#include "core/support/FileError.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QString boundary = QStringLiteral("norvanebar-0F6E1C2A-5B7D-4E3F-9A8B-C1D2E3F4A5B6");

QByteArray contentOf(const QUrl& url) {
    QFile file(url.toLocalFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray patterned(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype index = 0; index < size; ++index) {
        bytes[index] = static_cast<char>(index * 31 % 251);
    }
    return bytes;
}
} // namespace

class MultipartBodyTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_temporary;
    QTemporaryDir m_sources;
    QByteArray m_previousTemporary;

    QUrl source(const QByteArray& content) {
        const QString path = m_sources.filePath(QStringLiteral("source.bin"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size()) {
            qFatal("can't write %s", qPrintable(path));
        }
        return QUrl::fromLocalFile(path);
    }

    QStringList temporaryFiles() const { return QDir(m_temporary.path()).entryList(QDir::Files); }

private slots:
    void initTestCase() {
        m_previousTemporary = qgetenv("TMPDIR");
        qputenv("TMPDIR", QFile::encodeName(m_temporary.path()));
    }
    void cleanupTestCase() { qputenv("TMPDIR", m_previousTemporary); }
    void cleanup() {
        for (const QString& file : temporaryFiles()) {
            QFile::remove(m_temporary.filePath(file));
        }
    }

    void theBodyInMemoryIsExactlyOnePart() {
        const QByteArray expected = "--norvanebar-0F6E1C2A-5B7D-4E3F-9A8B-C1D2E3F4A5B6\r\n"
                                    "Content-Disposition: form-data; name=\"attachment\"; filename=\"notes.txt\"\r\n"
                                    "Content-Type: application/octet-stream\r\n"
                                    "\r\n"
                                    "hello\r\n"
                                    "\r\n"
                                    "--norvanebar-0F6E1C2A-5B7D-4E3F-9A8B-C1D2E3F4A5B6--\r\n";
        QCOMPARE(Multipart::multipartBody(boundary, QStringLiteral("notes.txt"), "hello\r\n"), expected);
    }

    void aFilenameWithADoubleQuoteGoesOutUnescapedAsUtf8() {
        const QByteArray body =
            Multipart::multipartBody(boundary, QStringLiteral("Plan \"final\" – ü\\.pdf"), QByteArray());
        QVERIFY(body.contains("filename=\"Plan \"final\" \xe2\x80\x93 \xc3\xbc\\.pdf\"\r\n"));
    }

    void everyFileGoesOutAsOctetStream() {
        const QByteArray body = Multipart::multipartBody(boundary, QStringLiteral("photo.png"), "\x89PNG");
        QVERIFY(body.contains("\r\nContent-Type: application/octet-stream\r\n\r\n\x89PNG\r\n--"));
    }

    void theBodyOnDiskEqualsTheBodyInMemory() {
        // Three chunks and a bit, so that the copy loop turns over.
        const QByteArray content = patterned(3 * Multipart::chunkSize + 123);
        const QUrl body = Multipart::writeMultipartBody(boundary, QStringLiteral("movie.mov"), source(content));
        QCOMPARE(contentOf(body), Multipart::multipartBody(boundary, QStringLiteral("movie.mov"), content));
    }

    void anEmptyFileGivesAnEmptyPart() {
        const QUrl body = Multipart::writeMultipartBody(boundary, QStringLiteral("empty"), source(QByteArray()));
        QCOMPARE(contentOf(body), Multipart::multipartBody(boundary, QStringLiteral("empty"), QByteArray()));
    }

    void theBodyFileIsNamedAfterANewUuidInTheTemporaryDirectory() {
        const QUrl first = Multipart::writeMultipartBody(boundary, QStringLiteral("a"), source("a"));
        const QUrl second = Multipart::writeMultipartBody(boundary, QStringLiteral("a"), source("a"));
        QVERIFY(first != second);
        const QRegularExpression name(QStringLiteral(
            "^norvanebar-upload-[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\.multipart$"));
        for (const QUrl& body : {first, second}) {
            QVERIFY(first.isLocalFile());
            QCOMPARE(QFileInfo(body.toLocalFile()).absolutePath(), QDir(m_temporary.path()).absolutePath());
            QVERIFY2(name.match(body.fileName()).hasMatch(), qPrintable(body.fileName()));
        }
    }

    void aMissingSourceThrowsAndLeavesTheStartedBodyFile() {
        const QString missing = m_sources.filePath(QStringLiteral("missing.bin"));
        bool threw = false;
        try {
            Multipart::writeMultipartBody(boundary, QStringLiteral("missing.bin"), QUrl::fromLocalFile(missing));
        } catch (const FileError& error) {
            threw = error.path() == missing && !error.reason().isEmpty();
        }
        QVERIFY(threw);
        QCOMPARE(temporaryFiles().size(), 1);
    }

    void aBoundaryIsNewEachTimeInUpperCase() {
        const QString first = Multipart::newBoundary();
        QVERIFY(first != Multipart::newBoundary());
        QVERIFY(QRegularExpression(QStringLiteral("^norvanebar-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"))
                    .match(first)
                    .hasMatch());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(MultipartBodyTest)
#include "MultipartBodyTest.moc"
