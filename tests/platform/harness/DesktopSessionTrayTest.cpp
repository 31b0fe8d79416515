// Checks the desktop session's tray host with Qt's own tray icon, the client it exists for:
// NORVANEBAR_TRAY=sni  - Qt finds the StatusNotifierWatcher and its icon is registered there;
// NORVANEBAR_TRAY=xembed - Qt docks the icon in the XEmbed tray and knows its geometry;
// NORVANEBAR_TRAY=none - Qt reports no tray.
#include "support/TestMain.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTest>

#include <algorithm>

namespace {

QIcon squareIcon() {
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::darkCyan);
    return QIcon(pixmap);
}

QStringList registeredItems() {
    QDBusInterface watcher(QStringLiteral("org.kde.StatusNotifierWatcher"), QStringLiteral("/StatusNotifierWatcher"),
                           QStringLiteral("org.kde.StatusNotifierWatcher"));
    return watcher.property("RegisteredStatusNotifierItems").toStringList();
}

} // namespace

class DesktopSessionTrayTest : public QObject {
    Q_OBJECT

private slots:
    void trayIconAppearsInTheSessionTray() {
        const QByteArray mode = qgetenv("NORVANEBAR_TRAY");
        QVERIFY2(!mode.isEmpty(), "run inside a desktop session (NORVANEBAR_TRAY is not set)");
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));

        if (mode == "none") {
            QVERIFY(!QSystemTrayIcon::isSystemTrayAvailable());
            return;
        }
        QVERIFY(QSystemTrayIcon::isSystemTrayAvailable());

        QSystemTrayIcon icon(squareIcon());
        icon.setToolTip(QStringLiteral("desktop session check"));
        icon.show();

        if (mode == "sni") {
            // Qt registers its icon from a connection of its own, under that connection's unique name
            // or "org.kde.StatusNotifierItem-<pid>-<n>"; the watcher stores "<name>/StatusNotifierItem".
            // An item is ours when the connection behind the name belongs to this process.
            auto isOurs = [](const QString& item) {
                const QString suffix = QStringLiteral("/StatusNotifierItem");
                if (!item.endsWith(suffix))
                    return false;
                const QString name = item.chopped(suffix.size());
                const auto pid = QDBusConnection::sessionBus().interface()->servicePid(name);
                return pid.isValid() && qint64(pid.value()) == QCoreApplication::applicationPid();
            };
            auto registered = [&] {
                const QStringList items = registeredItems();
                return std::any_of(items.begin(), items.end(), isOurs);
            };
            QTRY_VERIFY_WITH_TIMEOUT(registered(), 5000);

            // The watcher logged that registration, with its monotonic time.
            QFile log(QString::fromLocal8Bit(qgetenv("NORVANEBAR_WATCHER_LOG")));
            QVERIFY2(log.open(QIODevice::ReadOnly), qPrintable(log.fileName()));
            bool logged = false;
            for (const QByteArray& line : log.readAll().split('\n')) {
                const QJsonObject record = QJsonDocument::fromJson(line).object();
                logged = logged || (record.value(QStringLiteral("event")).toString() == QStringLiteral("registered") &&
                                    isOurs(record.value(QStringLiteral("item")).toString()) &&
                                    record.value(QStringLiteral("time")).isDouble());
            }
            QVERIFY2(logged, "no registration of our icon in the watcher's log");
        } else if (mode == "xembed") {
            QTRY_VERIFY_WITH_TIMEOUT(icon.geometry().isValid() && !icon.geometry().isEmpty(), 5000);
        } else {
            QFAIL(qPrintable(QStringLiteral("unknown tray mode ") + QString::fromLatin1(mode)));
        }
    }
};

NORVANEBAR_TEST_MAIN(DesktopSessionTrayTest)
#include "DesktopSessionTrayTest.moc"
