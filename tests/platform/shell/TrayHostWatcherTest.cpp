#include "platform/linux/TrayHostWatcher.h"
#include "support/TestMain.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

// Runs in desktop sessions of each tray kind; NORVANEBAR_TRAY says which one this is.
class TrayHostWatcherTest : public QObject {
    Q_OBJECT

    const QByteArray m_tray = qgetenv("NORVANEBAR_TRAY");
    QTemporaryDir m_folder;

    static void stop(QProcess& process) {
        process.terminate();
        if (!process.waitForFinished(3000)) {
            process.kill();
            process.waitForFinished();
        }
    }

private slots:
    void findsTheSessionsHost() {
        if (m_tray == "none") {
            QSKIP("this session has no tray host");
        }
        TrayHostWatcher watcher;
        QSignalSpy found(&watcher, &TrayHostWatcher::hostFound);
        QSignalSpy absent(&watcher, &TrayHostWatcher::noHostFound);
        watcher.start();
        // The answer may come within start() itself, when the bus has answered by the time it is
        // awaited: a spy's wait() would then wait for a second one.
        QTRY_VERIFY_WITH_TIMEOUT(found.count() == 1, 10000);
        const auto expected =
            m_tray == "sni" ? TrayHostWatcher::TrayHost::statusNotifier : TrayHostWatcher::TrayHost::xembed;
        QCOMPARE(found.takeFirst().at(0).value<TrayHostWatcher::TrayHost>(), expected);
        QCOMPARE(absent.count(), 0);
    }

    void reportsAbsenceOnceThenNoticesAHostStartingLater_data() {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<TrayHostWatcher::TrayHost>("expected");
        QTest::newRow("StatusNotifierWatcher")
            << QStringLiteral("/usr/bin/python3")
            << QStringList{QStringLiteral(NORVANEBAR_WATCHER_SCRIPT), m_folder.filePath(QStringLiteral("events.jsonl"))}
            << TrayHostWatcher::TrayHost::statusNotifier;
        QTest::newRow("XEmbed tray") << QStringLiteral("trayer")
                                     << QStringList{QStringLiteral("--edge"), QStringLiteral("top")}
                                     << TrayHostWatcher::TrayHost::xembed;
    }
    void reportsAbsenceOnceThenNoticesAHostStartingLater() {
        if (m_tray != "none") {
            QSKIP("needs a session without a tray host");
        }
        QFETCH(QString, program);
        QFETCH(QStringList, arguments);
        QFETCH(TrayHostWatcher::TrayHost, expected);
        TrayHostWatcher watcher;
        QSignalSpy found(&watcher, &TrayHostWatcher::hostFound);
        QSignalSpy absent(&watcher, &TrayHostWatcher::noHostFound);
        watcher.start();
        QTRY_VERIFY_WITH_TIMEOUT(absent.count() == 1, 10000);

        QProcess host;
        host.start(program, arguments);
        QVERIFY(found.wait(15000));
        QCOMPARE(found.takeFirst().at(0).value<TrayHostWatcher::TrayHost>(), expected);
        QCOMPARE(absent.count(), 1);
        stop(host);
        // The next row starts only once the bus has seen this host go.
        QTRY_VERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(
            QStringLiteral("org.kde.StatusNotifierWatcher")));
    }
};

NORVANEBAR_TEST_MAIN(TrayHostWatcherTest)
#include "TrayHostWatcherTest.moc"
