#include "core/recording/FacecamBackgroundStore.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

// Pictures chosen for the overlay's background, copied into the data folder, which each test points
// at a fresh folder of its own.
class FacecamBackgroundStoreTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_home;

    QString backgrounds() const { return m_home->filePath(QStringLiteral("data/NorvaneBar/facecam-backgrounds")); }
    QString source(const QString& name, const QByteArray& bytes) const {
        QDir(m_home->path()).mkpath(QStringLiteral("pictures"));
        return writtenFile(m_home->filePath(QStringLiteral("pictures/") + name), bytes);
    }

private slots:
    void init() {
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", m_home->filePath(QStringLiteral("data")).toUtf8());
    }
    void cleanup() { qunsetenv("XDG_DATA_HOME"); }

    void aPictureIsCopiedUnderANewUuidWithItsExtension() {
        const QString original = source(QStringLiteral("beach.jpeg"), "beach");
        const std::optional<QString> copy = FacecamBackgroundStore::importImage(QUrl::fromLocalFile(original));
        QVERIFY(copy);
        const QFileInfo file(*copy);
        QCOMPARE(file.absolutePath(), backgrounds());
        static const QRegularExpression name(
            QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\.jpeg$"));
        QVERIFY2(name.match(file.fileName()).hasMatch(), qPrintable(file.fileName()));
        QCOMPARE(fileContents(*copy), QByteArray("beach"));
        QCOMPARE(fileContents(original), QByteArray("beach"));
    }

    void eachImportIsACopyOfItsOwn() {
        const QString original = source(QStringLiteral("beach.png"), "beach");
        const std::optional<QString> first = FacecamBackgroundStore::importImage(QUrl::fromLocalFile(original));
        const std::optional<QString> second = FacecamBackgroundStore::importImage(QUrl::fromLocalFile(original));
        QVERIFY(first && second);
        QVERIFY(*first != *second);
        QCOMPARE(QDir(backgrounds()).entryList(QDir::Files).size(), 2);
    }

    void aFileWithoutExtensionIsCopiedUnderTheUuidAlone() {
        const QString original = source(QStringLiteral("beach"), "beach");
        const std::optional<QString> copy = FacecamBackgroundStore::importImage(QUrl::fromLocalFile(original));
        QVERIFY(copy);
        static const QRegularExpression name(
            QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$"));
        QVERIFY2(name.match(QFileInfo(*copy).fileName()).hasMatch(), qPrintable(*copy));
        QCOMPARE(fileContents(*copy), QByteArray("beach"));
    }

    void aMissingFileGivesNothingAndCopiesNothing() {
        const QUrl missing = QUrl::fromLocalFile(m_home->filePath(QStringLiteral("pictures/gone.png")));
        QCOMPARE(FacecamBackgroundStore::importImage(missing), std::nullopt);
        QVERIFY(QDir(backgrounds()).entryList(QDir::Files).isEmpty());
    }

    void anAddressThatIsNoLocalFileGivesNothing() {
        QCOMPARE(FacecamBackgroundStore::importImage(QUrl(QStringLiteral("https://example.com/beach.png"))),
                 std::nullopt);
    }

    void aFolderThatCannotBeMadeGivesNothing() {
        const QString original = source(QStringLiteral("beach.png"), "beach");
        // A file stands where the folder would be.
        QDir(m_home->path()).mkpath(QStringLiteral("data/NorvaneBar"));
        writtenFile(backgrounds(), "in the way");
        QCOMPARE(FacecamBackgroundStore::importImage(QUrl::fromLocalFile(original)), std::nullopt);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(FacecamBackgroundStoreTest)
#include "FacecamBackgroundStoreTest.moc"
