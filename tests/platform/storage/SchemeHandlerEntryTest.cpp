#include "platform/linux/SchemeHandlerEntry.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class SchemeHandlerEntryTest : public QObject {
    Q_OBJECT

    static QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static void write(const QString& path, const QByteArray& contents) {
        QVERIFY(QDir().mkpath(QFileInfo(path).absolutePath()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(contents), contents.size());
    }

    // An install tree under `prefix`: the program in bin/ and its desktop entry in share/applications/.
    static QString installedProgram(const QString& prefix) {
        write(prefix + QStringLiteral("/bin/norvanebar"), "program");
        write(prefix + QStringLiteral("/share/applications/com.norvanebar.NorvaneBar.desktop"), "[Desktop Entry]\n");
        return prefix + QStringLiteral("/bin/norvanebar");
    }

private slots:
    void theEntryTakesTheAddressAndDeclaresTheScheme() {
        const QByteArray entry = SchemeHandlerEntry::contents(QStringLiteral("/opt/Norvane Bar/norvanebar"),
                                                              QStringLiteral("com.norvanebar.app"));
        QVERIFY(entry.contains("\nExec=\"/opt/Norvane Bar/norvanebar\" %u\n"));
        QVERIFY(entry.contains("\nMimeType=x-scheme-handler/com.norvanebar.app;\n"));
        QVERIFY(entry.contains("\nIcon=com.norvanebar.NorvaneBar\n"));
        QVERIFY(entry.startsWith("[Desktop Entry]\nType=Application\n"));
    }

    void aMissingListGetsTheDefaultsGroup() {
        QCOMPARE(
            SchemeHandlerEntry::withDefaultHandler({}, QStringLiteral("com.norvanebar.app")),
            QByteArray(
                "[Default Applications]\nx-scheme-handler/com.norvanebar.app=com.norvanebar.NorvaneBar.desktop\n"));
    }

    void otherGroupsAndHandlersStayAsTheyWere() {
        const QByteArray before = "[Added Associations]\nx-scheme-handler/com.norvanebar.app=other.desktop;\n\n"
                                  "[Default Applications]\ntext/html=firefox.desktop\n"
                                  "x-scheme-handler/com.norvanebar.app=old.desktop\n";
        QCOMPARE(SchemeHandlerEntry::withDefaultHandler(before, QStringLiteral("com.norvanebar.app")),
                 QByteArray("[Added Associations]\nx-scheme-handler/com.norvanebar.app=other.desktop;\n\n"
                            "[Default Applications]\ntext/html=firefox.desktop\n"
                            "x-scheme-handler/com.norvanebar.app=com.norvanebar.NorvaneBar.desktop\n"));
        const QByteArray withoutOurs = "[Default Applications]\ntext/html=firefox.desktop\n";
        QCOMPARE(
            SchemeHandlerEntry::withDefaultHandler(withoutOurs, QStringLiteral("com.norvanebar.app")),
            QByteArray("[Default Applications]\nx-scheme-handler/com.norvanebar.app=com.norvanebar.NorvaneBar.desktop\n"
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
                    .contains("x-scheme-handler/com.norvanebar.app=com.norvanebar.NorvaneBar.desktop\n"));
    }

    void theProgramIsInstalledWhereItsEntryIsBesideIt() {
        QTemporaryDir root;
        const QString program = installedProgram(root.filePath(QStringLiteral("usr")));
        QVERIFY(SchemeHandlerEntry::isInstalled(program));
        // A build tree's program has no entry beside it, nor one that is only named alike.
        QVERIFY(!SchemeHandlerEntry::isInstalled(root.filePath(QStringLiteral("build/src/desktop/norvanebar"))));
        write(root.filePath(QStringLiteral("opt/share/applications/norvanebar.desktop")), "[Desktop Entry]\n");
        QVERIFY(!SchemeHandlerEntry::isInstalled(root.filePath(QStringLiteral("opt/bin/norvanebar"))));
    }

    void anInstalledProgramOnlySetsTheDefault() {
        QTemporaryDir folder;
        const QString program = installedProgram(folder.filePath(QStringLiteral("root/usr")));
        SchemeHandlerEntry entry(folder.filePath(QStringLiteral("data/applications")),
                                 folder.filePath(QStringLiteral("config/mimeapps.list")), program);
        QCOMPARE(entry.registerHandler(QStringLiteral("com.norvanebar.app")), std::nullopt);
        QVERIFY(!QFile::exists(entry.filePath()));
        QCOMPARE(read(folder.filePath(QStringLiteral("config/mimeapps.list"))),
                 QByteArray("[Default Applications]\n"
                            "x-scheme-handler/com.norvanebar.app=com.norvanebar.NorvaneBar.desktop\n"));
    }

    void anInstalledProgramRemovesTheEntryARunFromTheBuildTreeLeft() {
        QTemporaryDir folder;
        const QString applications = folder.filePath(QStringLiteral("data/applications"));
        const QString mimeApps = folder.filePath(QStringLiteral("config/mimeapps.list"));
        SchemeHandlerEntry fromBuildTree(applications, mimeApps,
                                         folder.filePath(QStringLiteral("build/src/desktop/norvanebar")));
        QCOMPARE(fromBuildTree.registerHandler(QStringLiteral("com.norvanebar.app")), std::nullopt);
        QVERIFY(QFile::exists(fromBuildTree.filePath()));

        SchemeHandlerEntry installed(applications, mimeApps,
                                     installedProgram(folder.filePath(QStringLiteral("root/usr"))));
        QCOMPARE(installed.registerHandler(QStringLiteral("com.norvanebar.app")), std::nullopt);
        QVERIFY(!QFile::exists(installed.filePath()));
        QVERIFY(read(mimeApps).contains("x-scheme-handler/com.norvanebar.app=com.norvanebar.NorvaneBar.desktop\n"));
    }

    void anEntryOfTheSameNameThatIsNotOursStays() {
        QTemporaryDir folder;
        SchemeHandlerEntry installed(folder.filePath(QStringLiteral("data/applications")),
                                     folder.filePath(QStringLiteral("config/mimeapps.list")),
                                     installedProgram(folder.filePath(QStringLiteral("root/usr"))));
        // The user's own copy, edited to start the program otherwise.
        const QByteArray edited =
            SchemeHandlerEntry::contents(QStringLiteral("/usr/bin/norvanebar"), QStringLiteral("com.norvanebar.app")) +
            "X-Edited=true\n";
        write(installed.filePath(), edited);
        QCOMPARE(installed.registerHandler(QStringLiteral("com.norvanebar.app")), std::nullopt);
        QCOMPARE(read(installed.filePath()), edited);
    }

    void ourEntryIsKnownWhicheverProgramItStarts() {
        const QString scheme = QStringLiteral("com.norvanebar.app");
        QVERIFY(SchemeHandlerEntry::isOurs(SchemeHandlerEntry::contents(QStringLiteral("/a/b/norvanebar"), scheme),
                                           scheme));
        QVERIFY(SchemeHandlerEntry::isOurs(
            SchemeHandlerEntry::contents(QStringLiteral("/opt/Norvane Bar/norvanebar"), scheme), scheme));
        QVERIFY(!SchemeHandlerEntry::isOurs(
            SchemeHandlerEntry::contents(QStringLiteral("/a/b/norvanebar"), QStringLiteral("other")), scheme));
        QVERIFY(!SchemeHandlerEntry::isOurs("[Desktop Entry]\nType=Application\nName=NorvaneBar\n", scheme));
        QVERIFY(!SchemeHandlerEntry::isOurs(QByteArray(), scheme));
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
