#include "core/compose/AttachmentExporter.h"
#include "support/TestMain.h"

#include "support/TemporaryFolderTesting.h"

#include <QTest>

class AttachmentExporterTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

private slots:
    void aCopyGoesToANewPlace() {
        const QString source = writtenFile(m_folder.filePath(QStringLiteral("new-source.txt")), "source");
        const QString destination = m_folder.filePath(QStringLiteral("new-copy.txt"));
        QCOMPARE(AttachmentExporter::copyReplacing(QUrl::fromLocalFile(source), QUrl::fromLocalFile(destination)),
                 std::nullopt);
        QCOMPARE(fileContents(destination), QByteArray("source"));
        QCOMPARE(fileContents(source), QByteArray("source"));
    }

    void aCopyReplacesAnExistingFile() {
        const QString source = writtenFile(m_folder.filePath(QStringLiteral("source.txt")), "new");
        const QString destination = writtenFile(m_folder.filePath(QStringLiteral("existing.txt")), "old and longer");
        QCOMPARE(AttachmentExporter::copyReplacing(QUrl::fromLocalFile(source), QUrl::fromLocalFile(destination)),
                 std::nullopt);
        QCOMPARE(fileContents(destination), QByteArray("new"));
    }

    void savingAFileOntoItselfKeepsIt() {
        const QString path = writtenFile(m_folder.filePath(QStringLiteral("self.txt")), "mine");
        QCOMPARE(AttachmentExporter::copyReplacing(QUrl::fromLocalFile(path), QUrl::fromLocalFile(path)), std::nullopt);
        QCOMPARE(fileContents(path), QByteArray("mine"));
    }

    void aMissingSourceGivesAFailureTextAndNoFile() {
        const QString destination = m_folder.filePath(QStringLiteral("never.txt"));
        const std::optional<QString> failure = AttachmentExporter::copyReplacing(
            QUrl::fromLocalFile(m_folder.filePath(QStringLiteral("missing.txt"))), QUrl::fromLocalFile(destination));
        QVERIFY(failure);
        QVERIFY(!failure->isEmpty());
        QVERIFY(!QFile::exists(destination));
    }

    void aDestinationInAMissingFolderGivesAFailureText() {
        const QString source = writtenFile(m_folder.filePath(QStringLiteral("lonely.txt")), "x");
        const std::optional<QString> failure = AttachmentExporter::copyReplacing(
            QUrl::fromLocalFile(source), QUrl::fromLocalFile(m_folder.filePath(QStringLiteral("no/such/a.txt"))));
        QVERIFY(failure);
        QVERIFY(!failure->isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AttachmentExporterTest)
#include "AttachmentExporterTest.moc"
