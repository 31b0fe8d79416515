#include "platform/linux/AutostartEntry.h"
#include "support/TestMain.h"

#include "support/TemporaryFolderTesting.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

// Launch at login as the freedesktop autostart entry: what the file says, that the desktop's own
// checker accepts it, how it is removed, and what a folder that can't be written gives.
class AutostartEntryTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_home;

    QString folder() const { return m_home.filePath(QStringLiteral("autostart")); }

    // desktop-file-validate's verdict on the file: empty when it accepts it without a remark.
    static QString validated(const QString& path) {
        const QString validator = QStandardPaths::findExecutable(QStringLiteral("desktop-file-validate"));
        if (validator.isEmpty()) {
            return QStringLiteral("desktop-file-validate is not installed (package desktop-file-utils)");
        }
        QProcess process;
        process.start(validator, {path});
        if (!process.waitForFinished(10000)) {
            return QStringLiteral("desktop-file-validate did not finish");
        }
        const QString remarks = QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
        return process.exitCode() == 0 && remarks.isEmpty()
                   ? QString()
                   : QStringLiteral("exit %1: %2").arg(process.exitCode()).arg(remarks);
    }

private slots:
    void cleanup() {
        QDir(folder()).removeRecursively();
        QFile::remove(folder());
    }

    void theEntryLivesInTheAutostartFolderOfXdgConfigHome() {
        const QByteArray previous = qgetenv("XDG_CONFIG_HOME");
        qputenv("XDG_CONFIG_HOME", m_home.filePath(QStringLiteral("config")).toLocal8Bit());
        const QString found = AutostartEntry::defaultFolder();
        const QString path = AutostartEntry().filePath();
        AutostartEntry running;
        QCOMPARE(running.setEnabled(true), std::nullopt);
        const QByteArray program = fileContents(running.filePath());
        qputenv("XDG_CONFIG_HOME", previous);
        QCOMPARE(found, m_home.filePath(QStringLiteral("config/autostart")));
        // It starts the program that runs: this test's here, an installed one from its prefix.
        QVERIFY(program.contains("\nExec=\"" + QCoreApplication::applicationFilePath().toUtf8() + "\"\n"));
        QCOMPARE(path, m_home.filePath(QStringLiteral("config/autostart/com.norvanebar.NorvaneBar.desktop")));
    }

    void turningOnWritesAnApplicationEntryThatStartsTheProgram() {
        AutostartEntry entry(folder(), QStringLiteral("/usr/bin/norvanebar"));
        QVERIFY(!entry.isEnabled());
        QCOMPARE(entry.setEnabled(true), std::nullopt);
        QVERIFY(entry.isEnabled());
        QCOMPARE(entry.filePath(), folder() + QStringLiteral("/com.norvanebar.NorvaneBar.desktop"));
        QCOMPARE(fileContents(entry.filePath()), QByteArray("[Desktop Entry]\n"
                                                            "Type=Application\n"
                                                            "Name=NorvaneBar\n"
                                                            "Comment=Create Norvane tasks from the panel\n"
                                                            "Exec=\"/usr/bin/norvanebar\"\n"
                                                            "Icon=com.norvanebar.NorvaneBar\n"
                                                            "Terminal=false\n"
                                                            "X-GNOME-Autostart-enabled=true\n"));
    }

    void anInstalledProgramIsStartedFromItsPrefix() {
        AutostartEntry installed(folder(), QStringLiteral("/opt/norvanebar-root/usr/bin/norvanebar"));
        QCOMPARE(installed.setEnabled(true), std::nullopt);
        QVERIFY(fileContents(installed.filePath()).contains("\nExec=\"/opt/norvanebar-root/usr/bin/norvanebar\"\n"));
        AutostartEntry fromBuildTree(folder(), QStringLiteral("/work/build/main/src/desktop/norvanebar"));
        QCOMPARE(fromBuildTree.setEnabled(true), std::nullopt);
        QCOMPARE(fromBuildTree.filePath(), installed.filePath());
        QVERIFY(fileContents(installed.filePath()).contains("\nExec=\"/work/build/main/src/desktop/norvanebar\"\n"));
    }

    void theEntryPassesDesktopFileValidate() {
        AutostartEntry entry(folder(), QStringLiteral("/opt/Norvane Bar/bin/norvanebar"));
        QCOMPARE(entry.setEnabled(true), std::nullopt);
        QCOMPARE(validated(entry.filePath()), QString());
    }

    void aPathWithQuotesDollarsBackslashesAndPercentSignsIsQuotedAndEscaped() {
        const QString path = QStringLiteral("/opt/a \"b\" `c` $d \\e 100%/norvanebar");
        const QByteArray contents = AutostartEntry::contents(path);
        // Inside the quotes ", `, $ and \ take a backslash and % is doubled; then the value's own
        // escaping doubles each backslash once more.
        QVERIFY2(contents.contains("\nExec=\"/opt/a \\\\\"b\\\\\" \\\\`c\\\\` \\\\$d \\\\\\\\e 100%%/norvanebar\"\n"),
                 contents.constData());
        AutostartEntry entry(folder(), path);
        QCOMPARE(entry.setEnabled(true), std::nullopt);
        QCOMPARE(validated(entry.filePath()), QString());
    }

    void turningOffRemovesTheFile() {
        AutostartEntry entry(folder(), QStringLiteral("/usr/bin/norvanebar"));
        QCOMPARE(entry.setEnabled(true), std::nullopt);
        QVERIFY(QFile::exists(entry.filePath()));
        QCOMPARE(entry.setEnabled(false), std::nullopt);
        QVERIFY(!QFile::exists(entry.filePath()));
        QVERIFY(!entry.isEnabled());
        // Off again, with nothing left to remove.
        QCOMPARE(entry.setEnabled(false), std::nullopt);
    }

    void anEntrySwitchedOffOnDiskCountsAsOff() {
        AutostartEntry entry(folder(), QStringLiteral("/usr/bin/norvanebar"));
        QVERIFY(QDir().mkpath(folder()));
        writtenFile(entry.filePath(),
                    "[Desktop Entry]\nType=Application\nName=NorvaneBar\nExec=norvanebar\nHidden=true\n");
        QVERIFY(!entry.isEnabled());
        writtenFile(entry.filePath(), "[Desktop Entry]\nType=Application\nName=NorvaneBar\nExec=norvanebar\n"
                                      "X-GNOME-Autostart-enabled=false\n");
        QVERIFY(!entry.isEnabled());
        // Turning it on writes our entry over it.
        QCOMPARE(entry.setEnabled(true), std::nullopt);
        QVERIFY(entry.isEnabled());
    }

    void aFolderThatCannotBeWrittenGivesItsMessageAndNoEntry() {
        // A file where the folder should be stops everyone, root included, whom file modes don't.
        writtenFile(folder(), "not a folder");
        AutostartEntry entry(folder(), QStringLiteral("/usr/bin/norvanebar"));
        const std::optional<QString> failure = entry.setEnabled(true);
        QVERIFY(failure);
        QVERIFY2(failure->contains(QDir::toNativeSeparators(folder())), qPrintable(*failure));
        QVERIFY(!entry.isEnabled());
    }

    void anEntryThatCannotBeRemovedGivesItsMessageAndStaysOn() {
        AutostartEntry entry(folder(), QStringLiteral("/usr/bin/norvanebar"));
        QCOMPARE(entry.setEnabled(true), std::nullopt);
        // The file can't be removed where its folder is read-only; root can, so for root the entry
        // is instead a folder with a file in it, which no one removes as a file.
        QFile::Permissions permissions = QFile::permissions(folder());
        const bool removableAnyway =
            QFile::setPermissions(folder(), QFile::ReadOwner | QFile::ExeOwner) && QFile::remove(entry.filePath());
        if (removableAnyway) {
            QVERIFY(QDir().mkpath(entry.filePath() + QStringLiteral("/inside")));
        }
        const std::optional<QString> failure = entry.setEnabled(false);
        QFile::setPermissions(folder(), permissions);
        QVERIFY(failure);
        QVERIFY2(failure->contains(QDir::toNativeSeparators(entry.filePath())), qPrintable(*failure));
        QVERIFY(QFileInfo::exists(entry.filePath()));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AutostartEntryTest)
#include "AutostartEntryTest.moc"
