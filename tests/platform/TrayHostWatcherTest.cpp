#include "linux/TrayHostWatcher.h"

#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

// Runs in desktop sessions of each tray kind; NORVANEBAR_TRAY says which one this is.
class TrayHostWatcherTest : public QObject {
    Q_OBJECT

    const QByteArray m_tray = qgetenv("NORVANEBAR_TRAY");

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
        QVERIFY(found.wait(3000));
        const auto expected =
            m_tray == "sni" ? TrayHostWatcher::TrayHost::statusNotifier : TrayHostWatcher::TrayHost::xembed;
        QCOMPARE(found.takeFirst().at(0).value<TrayHostWatcher::TrayHost>(), expected);
        QCOMPARE(absent.count(), 0);
    }

    void reportsAbsenceOnceThenNoticesAStatusNotifierHostStartingLater() {
        if (m_tray != "none") {
            QSKIP("needs a session without a tray host");
        }
        TrayHostWatcher watcher;
        QSignalSpy found(&watcher, &TrayHostWatcher::hostFound);
        QSignalSpy absent(&watcher, &TrayHostWatcher::noHostFound);
        watcher.start();
        QVERIFY(absent.wait(3000));

        QTemporaryDir dir;
        QProcess host;
        host.start(QStringLiteral("/usr/bin/python3"),
                   {QStringLiteral(NORVANEBAR_WATCHER_SCRIPT), dir.filePath(QStringLiteral("events.jsonl"))});
        QVERIFY(found.wait(5000));
        QCOMPARE(found.takeFirst().at(0).value<TrayHostWatcher::TrayHost>(), TrayHostWatcher::TrayHost::statusNotifier);
        QCOMPARE(absent.count(), 1);
        stop(host);
    }

    void noticesAnXEmbedTrayStartingLater() {
        if (m_tray != "none") {
            QSKIP("needs a session without a tray host");
        }
        TrayHostWatcher watcher;
        QSignalSpy found(&watcher, &TrayHostWatcher::hostFound);
        QSignalSpy absent(&watcher, &TrayHostWatcher::noHostFound);
        watcher.start();
        QVERIFY(absent.wait(3000));

        QProcess tray;
        tray.start(QStringLiteral("trayer"), {QStringLiteral("--edge"), QStringLiteral("top")});
        QVERIFY(found.wait(5000));
        QCOMPARE(found.takeFirst().at(0).value<TrayHostWatcher::TrayHost>(), TrayHostWatcher::TrayHost::xembed);
        stop(tray);
    }
};

QTEST_MAIN(TrayHostWatcherTest)
#include "TrayHostWatcherTest.moc"
