#include "core/settings/QuickLinks.h"
#include "support/SettingsFileTesting.h"
#include "support/TestMain.h"

#include "core/json/JsonDecoding.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

// The quick links of the tray menu as the settings window adds and removes them, read back from the
// settings file.
class QuickLinksTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path() const { return m_folder.filePath(QStringLiteral("settings.json")); }
    QJsonArray bookmarksInFile() const {
        return SettingsFileTesting::stored(path()).value(QStringLiteral("bookmarks")).toArray();
    }

private slots:
    void cleanup() { QFile::remove(path()); }

    void aLinkNeedsANameAndAnHttpsOrHttpAddress() {
        QVERIFY(
            QuickLinks::canAdd(QStringLiteral("Sprint board"), QStringLiteral("https://app.norvane.com/9/v/l/li/1")));
        QVERIFY(QuickLinks::canAdd(QStringLiteral("Local"), QStringLiteral("http://127.0.0.1:8080/")));
        QVERIFY(QuickLinks::canAdd(QStringLiteral("Upper case"), QStringLiteral("HTTPS://example.com")));
        QVERIFY(!QuickLinks::canAdd(QString(), QStringLiteral("https://example.com")));
        QVERIFY(!QuickLinks::canAdd(QStringLiteral(" \t "), QStringLiteral("https://example.com")));
        QVERIFY(!QuickLinks::canAdd(QStringLiteral("Board"), QString()));
        QVERIFY(!QuickLinks::canAdd(QStringLiteral("Board"), QStringLiteral("  ")));
        QVERIFY(!QuickLinks::canAdd(QStringLiteral("Board"), QStringLiteral("example.com/board")));
        QVERIFY(!QuickLinks::canAdd(QStringLiteral("Board"), QStringLiteral("https://exa mple.com")));
    }

    void aQuickLinkWhoseAddressHasASchemeOtherThanHttpsOrHttpCannotBeAdded() {
        SettingsStore store(path());
        for (const QString& address :
             {QStringLiteral("ftp://files.example.com/board"), QStringLiteral("file:///etc/passwd"),
              QStringLiteral("javascript:alert(1)"), QStringLiteral("mailto:team@example.com"),
              QStringLiteral("norvane://board"), QStringLiteral("httpx://example.com")}) {
            QVERIFY2(!QuickLinks::canAdd(QStringLiteral("Board"), address), qPrintable(address));
            QVERIFY2(!QuickLinks::add(store, QStringLiteral("Board"), address), qPrintable(address));
        }
        QVERIFY(store.settings().bookmarks.isEmpty());
        QVERIFY(!QFile::exists(path()));
    }

    void addingTrimsSpacesAndTabsAndSaves() {
        SettingsStore store(path());
        QSignalSpy changed(&store, &SettingsStore::settingsChanged);
        QVERIFY(
            QuickLinks::add(store, QStringLiteral("\t Sprint board "), QStringLiteral("  https://example.com/b\t")));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(store.settings().bookmarks.size(), 1);
        QCOMPARE(store.settings().bookmarks[0].name, QStringLiteral("Sprint board"));
        QCOMPARE(store.settings().bookmarks[0].urlString, QStringLiteral("https://example.com/b"));
        QVERIFY(!store.settings().bookmarks[0].id.isNull());

        const QJsonArray stored = bookmarksInFile();
        QCOMPARE(stored.size(), 1);
        QCOMPARE(stored[0][QStringLiteral("name")].toString(), QStringLiteral("Sprint board"));
        QCOMPARE(stored[0][QStringLiteral("urlString")].toString(), QStringLiteral("https://example.com/b"));
        QCOMPARE(QUuid(stored[0][QStringLiteral("id")].toString()), store.settings().bookmarks[0].id);
    }

    void aNewLinkGoesLastWithAFreshId() {
        SettingsStore store(path());
        QVERIFY(QuickLinks::add(store, QStringLiteral("One"), QStringLiteral("https://one.example")));
        QVERIFY(QuickLinks::add(store, QStringLiteral("One"), QStringLiteral("https://one.example")));
        QVERIFY(QuickLinks::add(store, QStringLiteral("Two"), QStringLiteral("https://two.example")));
        const QList<Bookmark>& bookmarks = store.settings().bookmarks;
        QCOMPARE(bookmarks.size(), 3);
        QCOMPARE(bookmarks[2].name, QStringLiteral("Two"));
        QVERIFY(bookmarks[0].id != bookmarks[1].id);
    }

    void removingTakesOnlyThatLinkAndSaves() {
        SettingsStore store(path());
        QVERIFY(QuickLinks::add(store, QStringLiteral("One"), QStringLiteral("https://one.example")));
        QVERIFY(QuickLinks::add(store, QStringLiteral("Two"), QStringLiteral("https://two.example")));
        QuickLinks::remove(store, store.settings().bookmarks[0].id);
        QCOMPARE(store.settings().bookmarks.size(), 1);
        QCOMPARE(store.settings().bookmarks[0].name, QStringLiteral("Two"));
        const QJsonArray stored = bookmarksInFile();
        QCOMPARE(stored.size(), 1);
        QCOMPARE(stored[0][QStringLiteral("name")].toString(), QStringLiteral("Two"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(QuickLinksTest)
#include "QuickLinksTest.moc"
