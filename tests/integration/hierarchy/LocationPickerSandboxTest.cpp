#include "core/hierarchy/LocationPickerModel.h"
#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <QUuid>

namespace {

QStringList names(const QList<ListEntry>& entries) {
    QStringList found;
    for (const ListEntry& entry : entries) {
        found.append(entry.list.name);
    }
    return found;
}

QStringList ids(const QList<ListEntry>& entries) {
    QStringList found;
    for (const ListEntry& entry : entries) {
        found.append(entry.list.id);
    }
    return found;
}

// The store's order of the lists named "Same", and all the lists of one folder: twenty lists of one
// name among as many others, enough that a sort that is not stable would mix them.
QStringList sameNamedIDs() {
    QStringList found;
    for (int index = 0; index < 20; ++index) {
        found.append(QString::number(9100 - index));
    }
    return found;
}

QJsonArray folderLists() {
    QJsonArray lists;
    const QStringList same = sameNamedIDs();
    for (int index = 0; index < same.size(); ++index) {
        lists.append(QJsonObject{{"id", same.at(index)}, {"name", "Same"}});
        lists.append(QJsonObject{{"id", QString::number(9200 + index)},
                                 {"name", QStringLiteral("Other %1").arg(index, 2, 10, QChar(u'0'))}});
    }
    return lists;
}

// One user in one workspace whose folder holds lists of one name among others.
QJsonObject sameNamesSeed() {
    const QJsonObject folder{{"id", "801"}, {"name", "Folder"}, {"lists", folderLists()}};
    const QJsonObject space{{"id", "701"}, {"name", "Space"}, {"folders", QJsonArray{folder}}};
    return {{"users", QJsonArray{QJsonObject{{"id", 77}, {"username", "Pat"}, {"token", "pk_test_pat_4K8M2Q"}}}},
            {"workspaces",
             QJsonArray{QJsonObject{
                 {"id", "601"}, {"name", "Same names"}, {"members", QJsonArray{77}}, {"spaces", QJsonArray{space}}}}}};
}

} // namespace

// The location picker's state over the central state, against norvane-sandbox: the first demo user
// sees Northwind Studio and Fabrikam Labs.
class LocationPickerSandboxTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;
    std::unique_ptr<LocationPickerModel> m_picker;

    // The first demo user signed in on a settings file that holds `settings` as well.
    AppState& startSignedIn(QJsonObject settings = {}) {
        settings.insert(QStringLiteral("activeAccountID"), SandboxDemo::firstUserID);
        m_fixture->writeSettings(settings);
        AppState& app = m_fixture->startSignedIn();
        m_picker =
            std::make_unique<LocationPickerModel>(app.settings(), app.location(), app.serviceAddresses().webBaseURL);
        return app;
    }

    // The picker shown over Northwind's lists.
    void showNorthwind() {
        startSignedIn();
        m_picker->appear();
        QTRY_VERIFY(!m_picker->filteredEntries().isEmpty());
        QCOMPARE(m_picker->workspaceID(), SandboxDemo::northwindID);
    }

    QString address(const QString& listID) const {
        return m_sandbox.webUrl(u"").toString(QUrl::StripTrailingSlash) + u'/' + SandboxDemo::northwindID +
               QStringLiteral("/v/l/li/") + listID;
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = AppStateFixture::withFirstUser(m_sandbox);
        QVERIFY(m_fixture);
    }

    void cleanup() {
        m_picker.reset();
        m_fixture.reset();
    }

    void aStoredPreferredWorkspaceOfAnotherAccountIsReplacedByTheFirstAsSoonAsTheWorkspacesArrive() {
        // The hostile-names workspace belongs to another demo account.
        AppState& app = startSignedIn({{"preferredWorkspaceID", SandboxDemo::hostileNamesID}});
        QCOMPARE(app.settings().settings().preferredWorkspaceID, SandboxDemo::hostileNamesID);
        // The workspaces are asked for again, as after a change of account.
        app.location().forgetHierarchy();
        m_picker->appear();
        QCOMPARE(m_picker->workspaceID(), SandboxDemo::hostileNamesID);
        QTRY_COMPARE(app.hierarchy().workspaces().size(), 2);
        QCOMPARE(m_picker->workspaceID(), SandboxDemo::northwindID);
        QCOMPARE(app.settings().settings().preferredWorkspaceID, SandboxDemo::northwindID);
        QTRY_VERIFY(m_picker->filteredEntries().size() > 1);
        QCOMPARE(m_picker->filteredEntries().first().workspaceID, SandboxDemo::northwindID);
    }

    void twoListsOfOneNameInOneFolderKeepTheStoresRelativeOrder() {
        SandboxProcess sandbox;
        QVERIFY2(sandbox.startSeeded(sameNamesSeed()), qPrintable(sandbox.errorString()));
        AppStateFixture fixture(&sandbox);
        fixture.storeToken(77, QStringLiteral("pk_test_pat_4K8M2Q"));
        fixture.writeSettings({{"activeAccountID", 77}});
        AppState& app = fixture.startSignedIn();
        LocationPickerModel picker(app.settings(), app.location(), app.serviceAddresses().webBaseURL);
        picker.appear();
        QTRY_COMPARE(picker.filteredEntries().size(), 40);
        const QStringList sorted = ids(picker.filteredEntries());
        // "Other 00" to "Other 19" sort first, then the lists named "Same" in the service's order.
        QCOMPARE(sorted.first(), QStringLiteral("9200"));
        QCOMPARE(sorted.mid(20), sameNamedIDs());
    }

    void aSearchForAFoldersNameFindsAllItsLists() {
        showNorthwind();
        m_picker->setSearchText(QStringLiteral("Sprint 12"));
        QCOMPARE(names(m_picker->filteredEntries()), (QStringList{"Sprint 12 · API", "Sprint 12 · Web"}));
        // The folder Releases holds one list that is not archived; its name doesn't say "releases".
        m_picker->setSearchText(QStringLiteral("RELEASES"));
        QCOMPARE(names(m_picker->filteredEntries()), QStringList{"2.4 release"});
    }

    void aSearchForTheSeparatorFindsAllListsInFolders() {
        showNorthwind();
        m_picker->setSearchText(QStringLiteral(" › "));
        QCOMPARE(names(m_picker->filteredEntries()),
                 (QStringList{"2.4 release", "Sprint 12 · API", "Sprint 12 · Web"}));
        for (const ListEntry& entry : m_picker->filteredEntries()) {
            QVERIFY(entry.folderID.has_value());
        }
    }

    void aListsIDIsNeverSearched() {
        showNorthwind();
        m_picker->setSearchText(SandboxDemo::inboxListID);
        QVERIFY(m_picker->filteredEntries().isEmpty());
        QCOMPARE(m_picker->content(), LocationPickerModel::Content::noMatch);
        m_picker->setSearchText(QStringLiteral("inbox"));
        QCOMPARE(ids(m_picker->filteredEntries()), QStringList{SandboxDemo::inboxListID});
    }

    void removingABookmarkHereAlsoRemovesAQuickLinkOfTheSameAddressTypedByHandInSettings() {
        const QJsonObject typed{{"id", QUuid::createUuid().toString(QUuid::WithoutBraces)},
                                {"name", "Support, typed by hand"},
                                {"urlString", address(SandboxDemo::supportListID)}};
        const QJsonObject other{{"id", QUuid::createUuid().toString(QUuid::WithoutBraces)},
                                {"name", "Team page"},
                                {"urlString", m_sandbox.webUrl(u"/team").toString()}};
        m_fixture->writeSettings(
            {{"activeAccountID", SandboxDemo::firstUserID}, {"bookmarks", QJsonArray{typed, other}}});
        AppState& app = m_fixture->startSignedIn();
        QCOMPARE(app.settings().settings().bookmarks.size(), 2);
        LocationPickerModel picker(app.settings(), app.location(), app.serviceAddresses().webBaseURL);
        picker.appear();
        QTRY_VERIFY(app.hierarchy().entry(SandboxDemo::supportListID).has_value());
        const ListEntry support = *app.hierarchy().entry(SandboxDemo::supportListID);
        QVERIFY(picker.isBookmarked(support));

        picker.toggleBookmark(support);
        QVERIFY(!picker.isBookmarked(support));
        const QJsonArray onDisk = QJsonDocument::fromJson(fileContents(m_fixture->settingsPath()))
                                      .object()
                                      .value(QStringLiteral("bookmarks"))
                                      .toArray();
        QCOMPARE(onDisk.size(), 1);
        QCOMPARE(onDisk.first()[QStringLiteral("urlString")], other.value(QStringLiteral("urlString")));
        QCOMPARE(onDisk.first()[QStringLiteral("name")], other.value(QStringLiteral("name")));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(LocationPickerSandboxTest)
#include "LocationPickerSandboxTest.moc"
