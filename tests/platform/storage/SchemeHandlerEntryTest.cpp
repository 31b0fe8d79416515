#include "platform/linux/SchemeHandlerEntry.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class SchemeHandlerEntryTest : public QObject {
    Q_OBJECT

    static QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private slots:
    void theEntryTakesTheAddressAndDeclaresTheScheme() {
        const QByteArray entry = SchemeHandlerEntry::contents(QStringLiteral("/opt/Norvane Bar/norvanebar"),
                                                              QStringLiteral("com.norvanebar.app"));
        QVERIFY(entry.contains("\nExec=\"/opt/Norvane Bar/norvanebar\" %u\n"));
        QVERIFY(entry.contains("\nMimeType=x-scheme-handler/com.norvanebar.app;\n"));
        QVERIFY(entry.startsWith("[Desktop Entry]\nType=Application\n"));
    }

    void aMissingListGetsTheDefaultsGroup() {
        QCOMPARE(SchemeHandlerEntry::withDefaultHandler({}, QStringLiteral("com.norvanebar.app")),
                 QByteArray("[Default Applications]\nx-scheme-handler/com.norvanebar.app=norvanebar.desktop\n"));
    }

    void otherGroupsAndHandlersStayAsTheyWere() {
        const QByteArray before = "[Added Associations]\nx-scheme-handler/com.norvanebar.app=other.desktop;\n\n"
                                  "[Default Applications]\ntext/html=firefox.desktop\n"
                                  "x-scheme-handler/com.norvanebar.app=old.desktop\n";
        QCOMPARE(SchemeHandlerEntry::withDefaultHandler(before, QStringLiteral("com.norvanebar.app")),
                 QByteArray("[Added Associations]\nx-scheme-handler/com.norvanebar.app=other.desktop;\n\n"
                            "[Default Applications]\ntext/html=firefox.desktop\n"
                            "x-scheme-handler/com.norvanebar.app=norvanebar.desktop\n"));
        const QByteArray withoutOurs = "[Default Applications]\ntext/html=firefox.desktop\n";
        QCOMPARE(SchemeHandlerEntry::withDefaultHandler(withoutOurs, QStringLiteral("com.norvanebar.app")),
                 QByteArray("[Default Applications]\nx-scheme-handler/com.norvanebar.app=norvanebar.desktop\n"
                            "text/html=firefox.desktop\n"));
    }

    void registeringWritesTheEntryAndTheDefault() {
        QTemporaryDir folder;
        SchemeHandlerEntry entry(folder.filePath(QStringLiteral("data/applications")),
                                 folder.filePath(QStringLiteral("config/mimeapps.list")),
                                 QStringLiteral("/usr/bin/nb"));
        QCOMPARE(entry.registerHandler(QStringLiteral("com.norvanebar.app")), std::nullopt);
        QCOMPARE(read(entry.filePath()),
                 SchemeHandlerEntry::contents(QStringLiteral("/usr/bin/nb"), QStringLiteral("com.norvanebar.app")));
        QVERIFY(read(folder.filePath(QStringLiteral("config/mimeapps.list")))
                    .contains("x-scheme-handler/com.norvanebar.app=norvanebar.desktop\n"));
    }

    void aFolderThatCannotBeMadeIsReportedPlainly() {
        QTemporaryDir folder;
        QFile blocker(folder.filePath(QStringLiteral("data")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        SchemeHandlerEntry entry(folder.filePath(QStringLiteral("data/applications")),
                                 folder.filePath(QStringLiteral("mimeapps.list")), QStringLiteral("/usr/bin/nb"));
        const std::optional<QString> problem = entry.registerHandler(QStringLiteral("com.norvanebar.app"));
        QVERIFY(problem);
        QVERIFY2(problem->startsWith(QStringLiteral("NorvaneBar could not make itself the handler")),
                 qPrintable(*problem));
        QVERIFY2(problem->contains(folder.filePath(QStringLiteral("data/applications"))), qPrintable(*problem));
        QVERIFY(!QFile::exists(folder.filePath(QStringLiteral("mimeapps.list"))));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SchemeHandlerEntryTest)
#include "SchemeHandlerEntryTest.moc"
