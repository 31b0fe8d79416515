#include "core/support/FileInMemory.h"
#include "core/support/FileError.h"
#include "core/support/Sha256.h"
#include "support/StorageTesting.h"
#include "support/TestMain.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

// Whole files in memory of their own, and the digest the R2 uploads sign.
class FileInMemoryTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString write(const QString& name, const QByteArray& bytes) {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write %s", qPrintable(file.fileName()));
        }
        return file.fileName();
    }

private slots:
    void aFileComesBackByteForByteAcrossSeveralHugePages() {
        const QByteArray bytes = StorageTesting::randomBytes(5 * 1024 * 1024 + 17);
        const auto file = FileInMemory::read(write(QStringLiteral("big.bin"), bytes));
        QCOMPARE(file->bytes().size(), bytes.size());
        QVERIFY(file->bytes() == bytes);
    }

    void anEmptyFileIsNoBytes() {
        const auto file = FileInMemory::read(write(QStringLiteral("empty.txt"), {}));
        QVERIFY(file->bytes().isEmpty());
    }

    void aMissingFileIsAFileErrorNamingIt() {
        const QString path = m_folder.filePath(QStringLiteral("missing.txt"));
        try {
            FileInMemory::read(path);
            QFAIL("no FileError");
        } catch (const FileError& error) {
            QCOMPARE(error.path(), path);
            QVERIFY(!error.reason().isEmpty());
        }
    }

    void theDigestIsSha256() {
        for (const QByteArray& bytes : {QByteArray(), QByteArray("abc"), StorageTesting::randomBytes(3'000'001)}) {
            QCOMPARE(sha256(bytes), QCryptographicHash::hash(bytes, QCryptographicHash::Sha256));
        }
        QCOMPARE(sha256("abc").toHex(), QByteArray("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(FileInMemoryTest)
#include "FileInMemoryTest.moc"
