// norvane-sandbox as a program: its start-up lines, the address it binds, its options and its end.
#include "support/SandboxProcess.h"
#include "support/SyncHttpClient.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

class SandboxStartupTest : public QObject {
    Q_OBJECT

private:
    // The listening TCP sockets of /proc/net/tcp or tcp6 on this port, as "address:port" in hex.
    static QStringList listeners(const QString& table, int port) {
        QFile file(table);
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        const QString portHex = QStringLiteral("%1").arg(port, 4, 16, QLatin1Char('0')).toUpper();
        QStringList found;
        for (const QByteArray& line : file.readAll().split('\n').mid(1)) {
            const QStringList fields = QString::fromLatin1(line).simplified().split(QLatin1Char(' '));
            if (fields.size() > 3 && fields[1].endsWith(QLatin1Char(':') + portHex) &&
                fields[3] == QLatin1String("0A")) {
                found.append(fields[1]);
            }
        }
        return found;
    }

private slots:
    void firstLineTellsTheAddress() {
        SandboxProcess sandbox;
        QVERIFY2(sandbox.start(), qPrintable(sandbox.errorString()));
        const QStringList lines = sandbox.startupLines();
        QVERIFY(QRegularExpression(QStringLiteral("^listening http://127\\.0\\.0\\.1:[1-9][0-9]*$"))
                    .match(lines.value(0))
                    .hasMatch());
        const QString base = sandbox.baseUrl().toString();
        QVERIFY(lines.contains(QStringLiteral("api ") + base + QStringLiteral("/api/v2")));
        QVERIFY(lines.contains(QStringLiteral("web ") + base));
        QVERIFY(lines.contains(QStringLiteral("admin ") + base + QStringLiteral("/_sandbox")));
        QCOMPARE(lines.last(), QStringLiteral("ready"));
        QVERIFY(sandbox.tokens().size() >= 2);
        for (const SandboxProcess::Token& token : sandbox.tokens()) {
            QVERIFY(token.token.startsWith(QLatin1String("pk_demo_")));
            QVERIFY(token.userID > 0);
        }
    }

    void bindsLoopbackOnly() {
        SandboxProcess sandbox;
        QVERIFY2(sandbox.start(), qPrintable(sandbox.errorString()));
        const QString portHex = QStringLiteral(":%1").arg(sandbox.port(), 4, 16, QLatin1Char('0')).toUpper();
        QCOMPARE(listeners(QStringLiteral("/proc/net/tcp"), sandbox.port()),
                 QStringList{QStringLiteral("0100007F") + portHex});
        QCOMPARE(listeners(QStringLiteral("/proc/net/tcp6"), sandbox.port()), QStringList());
        // Another address of the loopback range reaches nothing.
        QTcpSocket elsewhere;
        elsewhere.connectToHost(QHostAddress(QStringLiteral("127.0.0.2")), static_cast<quint16>(sandbox.port()));
        QVERIFY(!elsewhere.waitForConnected(3000));
        QCOMPARE(elsewhere.error(), QAbstractSocket::ConnectionRefusedError);
    }

    void sigtermAndSigintEndItCleanlyAndRemoveItsTemporaryFolder() {
        for (const int signal : {SIGTERM, SIGINT}) {
            SandboxProcess sandbox;
            QVERIFY2(sandbox.start(), qPrintable(sandbox.errorString()));
            const QString folder = sandbox.dataFolder();
            QVERIFY(QFileInfo(folder).isDir());
            ::kill(static_cast<pid_t>(sandbox.process().processId()), signal);
            QVERIFY(sandbox.process().waitForFinished(10'000));
            QCOMPARE(sandbox.process().exitStatus(), QProcess::NormalExit);
            QCOMPARE(sandbox.process().exitCode(), 0);
            QVERIFY(!QFileInfo::exists(folder));
        }
    }

    void dataFolderIsKept() {
        QTemporaryDir folder;
        SandboxProcess sandbox;
        SandboxProcess::Options options;
        options.dataFolder = folder.path();
        QVERIFY2(sandbox.start(options), qPrintable(sandbox.errorString()));
        QCOMPARE(sandbox.dataFolder(), folder.path());
        QVERIFY(sandbox.stop());
        QVERIFY(QFileInfo(folder.path()).isDir());
    }

    void testEndpointsNeedAdmin() {
        SandboxProcess sandbox;
        SandboxProcess::Options options;
        options.admin = false;
        QVERIFY2(sandbox.start(options), qPrintable(sandbox.errorString()));
        SyncHttpClient http;
        QCOMPARE(http.get(sandbox.webUrl(u"/_sandbox/requests")).status, 404);
        QCOMPARE(http.send("POST", sandbox.webUrl(u"/_sandbox/reset")).status, 404);
        QVERIFY(!sandbox.startupLines().join(QLatin1Char('\n')).contains(QLatin1String("admin ")));
    }

    void emptySeedHasOneWorkspaceWithoutSpaces() {
        SandboxProcess sandbox;
        SandboxProcess::Options options;
        options.seed = QStringLiteral("empty");
        QVERIFY2(sandbox.start(options), qPrintable(sandbox.errorString()));
        SyncHttpClient http;
        const QJsonArray teams =
            http.get(sandbox.apiUrl(u"team"), sandbox.token()).json().value(QStringLiteral("teams")).toArray();
        QCOMPARE(teams.size(), 1);
        const QString id = teams[0].toObject().value(QStringLiteral("id")).toString();
        const HttpResult spaces = http.get(sandbox.apiUrl(QStringLiteral("team/%1/space").arg(id)), sandbox.token());
        QCOMPARE(spaces.status, 200);
        QCOMPARE(spaces.json().value(QStringLiteral("spaces")).toArray().size(), 0);
    }

    void seedFileIsLoaded() {
        QTemporaryDir folder;
        QFile seed(folder.filePath(QStringLiteral("seed.json")));
        QVERIFY(seed.open(QIODevice::WriteOnly));
        seed.write(R"({"users": [{"id": 7, "username": "Seven", "token": "pk_file_seven"}],
            "workspaces": [{"id": "w1", "name": "From a file", "members": [7],
              "spaces": [{"id": "s1", "name": "Space", "lists": [{"id": "l1", "name": "List",
                "tasks": [{"id": "t1", "name": "Seeded task", "assignees": [7], "due_date": 1700000000000}]}]}]}]})");
        seed.close();
        SandboxProcess sandbox;
        SandboxProcess::Options options;
        options.seed = seed.fileName();
        QVERIFY2(sandbox.start(options), qPrintable(sandbox.errorString()));
        QCOMPARE(sandbox.token(), QStringLiteral("pk_file_seven"));
        SyncHttpClient http;
        const QJsonArray tasks =
            http.get(sandbox.apiUrl(u"team/w1/task"), sandbox.token()).json().value(QStringLiteral("tasks")).toArray();
        QCOMPARE(tasks.size(), 1);
        QCOMPARE(tasks[0].toObject().value(QStringLiteral("name")).toString(), QStringLiteral("Seeded task"));
        QCOMPARE(tasks[0].toObject().value(QStringLiteral("due_date")).toString(), QStringLiteral("1700000000000"));
    }

    void badSeedFileStopsTheStart() {
        QTemporaryDir folder;
        QFile seed(folder.filePath(QStringLiteral("seed.json")));
        QVERIFY(seed.open(QIODevice::WriteOnly));
        seed.write(R"({"users": [], "workspaces": [{"id": "w1", "name": "W", "members": [99]}]})");
        seed.close();
        QProcess process;
        process.start(SandboxProcess::executablePath(), {QStringLiteral("--seed"), seed.fileName()});
        QVERIFY(process.waitForFinished(10'000));
        QCOMPARE(process.exitCode(), 2);
        QVERIFY(process.readAllStandardError().contains("unknown member 99"));
    }

    void busyPortStopsTheStart() {
        QTcpServer busy;
        QVERIFY(busy.listen(QHostAddress::LocalHost));
        QProcess process;
        process.start(SandboxProcess::executablePath(), {QStringLiteral("--port"), QString::number(busy.serverPort())});
        QVERIFY(process.waitForFinished(10'000));
        QCOMPARE(process.exitCode(), 1);
        QVERIFY(process.readAllStandardError().contains("cannot listen"));
    }

    void badOptionsAreRefused() {
        QProcess process;
        process.start(SandboxProcess::executablePath(), {QStringLiteral("--port"), QStringLiteral("seventy")});
        QVERIFY(process.waitForFinished(10'000));
        QCOMPARE(process.exitCode(), 2);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SandboxStartupTest)
#include "SandboxStartupTest.moc"
