#include "core/hierarchy/LocationPickerModel.h"
#include "core/hierarchy/LocationRowModel.h"
#include "support/HierarchyTesting.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

using namespace HierarchyTesting;

namespace {

const QString webBase = QStringLiteral("https://app.norvane.test");

ListEntry entry(const QString& listID, const QString& name, const QString& space,
                const std::optional<QString>& folder = std::nullopt, const QString& workspaceID = QStringLiteral("w")) {
    return {workspaceID, QStringLiteral("s-") + space,
            space,       folder ? std::optional(QStringLiteral("f-") + *folder) : std::nullopt,
            folder,      NVList{listID, name, std::nullopt, std::nullopt},
            {}};
}

Workspace workspace(const QString& id) {
    return {id, QStringLiteral("Workspace ") + id, std::nullopt, std::nullopt};
}

QStringList listIDs(const QList<ListEntry>& entries) {
    QStringList ids;
    for (const ListEntry& each : entries) {
        ids.append(each.list.id);
    }
    return ids;
}

// A picker over a hierarchy on a FakeService and a settings file of its own.
struct Picker {
    FakeClient fake;
    QTemporaryDir folder;
    SettingsStore settings{folder.filePath(QStringLiteral("settings.json"))};
    HierarchyStore hierarchy{fake.client};
    LocationMemory location{settings, hierarchy, fake.client};
    LocationPickerModel model{settings, location, QUrl(webBase)};

    // Workspace w is known with these entries.
    void show(const QList<ListEntry>& entries) {
        hierarchy.setWorkspaces({workspace(QStringLiteral("w"))});
        hierarchy.setEntriesByWorkspace({{QStringLiteral("w"), entries}});
        model.appear();
    }

    QJsonArray bookmarksOnDisk() const {
        return QJsonDocument::fromJson(fileContents(settings.filePath()))
            .object()
            .value(QStringLiteral("bookmarks"))
            .toArray();
    }
};

// The Northwind-like tree the searches run over.
QList<ListEntry> tree() {
    return {entry(QStringLiteral("901"), QStringLiteral("Inbox"), QStringLiteral("Product")),
            entry(QStringLiteral("902"), QStringLiteral("Sprint 12 · Web"), QStringLiteral("Product"),
                  QStringLiteral("Sprint")),
            entry(QStringLiteral("903"), QStringLiteral("2.4 release"), QStringLiteral("Product"),
                  QStringLiteral("Releases")),
            entry(QStringLiteral("904"), QStringLiteral("2.3 release"), QStringLiteral("Product"),
                  QStringLiteral("Releases")),
            entry(QStringLiteral("905"), QStringLiteral("Support queue"), QStringLiteral("Operations"))};
}

} // namespace

class LocationPickerModelTest : public QObject {
    Q_OBJECT

private slots:
    void aStoredPreferredWorkspaceOfAnotherAccountGivesWayToTheFirstAsSoonAsTheWorkspacesArrive() {
        Picker picker;
        picker.fake.service.answer(QStringLiteral("team"), wrapped("teams", {record("a"), record("b")}));
        picker.fake.service.hold(QStringLiteral("team"));
        picker.fake.service.answer(QStringLiteral("team/a/space"), wrapped("spaces", {}));
        picker.settings.set(&AppSettings::preferredWorkspaceID, QStringLiteral("other"));
        picker.model.appear();
        QCOMPARE(picker.model.workspaceID(), QStringLiteral("other"));
        picker.fake.service.release(QStringLiteral("team"));
        QTRY_COMPARE(picker.model.workspaceID(), QStringLiteral("a"));
        QCOMPARE(picker.settings.settings().preferredWorkspaceID, QStringLiteral("a"));
        QTRY_VERIFY(picker.hierarchy.entriesByWorkspace().contains(QStringLiteral("a")));
        QTRY_VERIFY(picker.hierarchy.loadingLists().isEmpty());
    }

    void aPreferredWorkspaceThatIsNotAmongTheKnownOnesGivesWayWhenThePickerAppears() {
        Picker picker;
        picker.hierarchy.setWorkspaces({workspace(QStringLiteral("a")), workspace(QStringLiteral("b"))});
        picker.hierarchy.setEntriesByWorkspace({{QStringLiteral("a"), {}}});
        picker.settings.set(&AppSettings::preferredWorkspaceID, QStringLiteral("other"));
        picker.model.appear();
        QTRY_COMPARE(picker.model.workspaceID(), QStringLiteral("a"));
        QCOMPARE(picker.settings.settings().preferredWorkspaceID, QStringLiteral("a"));
        // The lists of the other workspace were asked for meanwhile; the test ends with their answer.
        QTRY_VERIFY(picker.hierarchy.loadingLists().isEmpty());
    }

    void theWorkspaceComesFromTheCurrentListThenThePreferredThenTheLastLocationThenTheFirst() {
        Picker picker;
        const QList<Workspace> known{workspace(QStringLiteral("a")), workspace(QStringLiteral("b")),
                                     workspace(QStringLiteral("c")), workspace(QStringLiteral("d"))};
        picker.hierarchy.setWorkspaces(known);
        picker.hierarchy.setEntriesByWorkspace({{QStringLiteral("a"), {}},
                                                {QStringLiteral("b"), {}},
                                                {QStringLiteral("c"), {}},
                                                {QStringLiteral("d"), {}}});
        picker.model.appear();
        QCOMPARE(picker.model.workspaceID(), QStringLiteral("a"));
        picker.model.disappear();

        picker.settings.modify([](AppSettings& settings) {
            settings.preferredWorkspaceID.reset();
            settings.lastLocation = SavedLocation{QStringLiteral("c"), QStringLiteral("l"), QStringLiteral("L"), {}};
        });
        picker.model.appear();
        QCOMPARE(picker.model.workspaceID(), QStringLiteral("c"));
        picker.model.disappear();

        picker.settings.set(&AppSettings::preferredWorkspaceID, QStringLiteral("b"));
        picker.model.appear();
        QCOMPARE(picker.model.workspaceID(), QStringLiteral("b"));
        picker.model.disappear();

        picker.location.selectLocation(
            entry(QStringLiteral("l"), QStringLiteral("L"), QStringLiteral("S"), std::nullopt, QStringLiteral("d")));
        picker.settings.set(&AppSettings::preferredWorkspaceID, QStringLiteral("b"));
        picker.model.appear();
        QCOMPARE(picker.model.workspaceID(), QStringLiteral("d"));
        // The chosen list's details are asked for; the test ends when they have been answered.
        QTRY_VERIFY(!picker.location.currentContext()->isLoading());
    }

    void choosingAWorkspaceMakesItPreferredAndLoadsItsListsWithoutForce() {
        Picker picker;
        picker.fake.service.answer(QStringLiteral("team/b/space"), wrapped("spaces", {}));
        picker.show({});
        picker.hierarchy.setWorkspaces({workspace(QStringLiteral("w")), workspace(QStringLiteral("b"))});
        picker.model.setWorkspaceID(QStringLiteral("b"));
        QCOMPARE(picker.settings.settings().preferredWorkspaceID, QStringLiteral("b"));
        QTRY_VERIFY(picker.hierarchy.entriesByWorkspace().contains(QStringLiteral("b")));
        picker.model.setWorkspaceID(QStringLiteral("w"));
        picker.model.setWorkspaceID(QStringLiteral("b"));
        QTest::qWait(50);
        // w was known and b is now: nothing more is asked for.
        QCOMPARE(picker.fake.service.paths, QStringList{QStringLiteral("team/b/space")});
        QCOMPARE(picker.settings.settings().preferredWorkspaceID, QStringLiteral("b"));
    }

    void aHiddenPickerLeavesTheWorkspaceAndThePreferenceAlone() {
        Picker picker;
        picker.show({});
        picker.model.disappear();
        picker.settings.set(&AppSettings::preferredWorkspaceID, QStringLiteral("kept"));
        picker.hierarchy.setWorkspaces({workspace(QStringLiteral("x"))});
        QCOMPARE(picker.model.workspaceID(), QStringLiteral("w"));
        QCOMPARE(picker.settings.settings().preferredWorkspaceID, QStringLiteral("kept"));
    }

    void anEmptyWorkspaceListLeavesNoWorkspace() {
        Picker picker;
        picker.show({});
        picker.hierarchy.setWorkspaces({});
        QCOMPARE(picker.model.workspaceID(), std::nullopt);
        QVERIFY(picker.model.filteredEntries().isEmpty());
        QCOMPARE(picker.settings.settings().preferredWorkspaceID, QStringLiteral("w"));
    }

    void listsAreSortedBySpaceFolderAndNameInPlainCaseSensitiveOrder() {
        Picker picker;
        picker.show({entry(QStringLiteral("1"), QStringLiteral("b"), QStringLiteral("S"), QStringLiteral("F")),
                     entry(QStringLiteral("2"), QStringLiteral("a"), QStringLiteral("S"), QStringLiteral("F")),
                     entry(QStringLiteral("3"), QStringLiteral("B"), QStringLiteral("S"), QStringLiteral("F")),
                     entry(QStringLiteral("4"), QStringLiteral("z"), QStringLiteral("S")),
                     entry(QStringLiteral("5"), QStringLiteral("a"), QStringLiteral("S"), QStringLiteral("E")),
                     entry(QStringLiteral("6"), QStringLiteral("a"), QStringLiteral("R"), QStringLiteral("Z")),
                     entry(QStringLiteral("7"), QStringLiteral("a"), QStringLiteral("s"))});
        // Upper case sorts before lower case; a list outside folders before the folders.
        QCOMPARE(listIDs(picker.model.filteredEntries()), (QStringList{"6", "4", "5", "3", "2", "1", "7"}));
    }

    void twoListsOfOneNameInOneFolderKeepTheStoresRelativeOrder() {
        Picker picker;
        QList<ListEntry> entries;
        QStringList sameNamed;
        for (int index = 0; index < 40; ++index) {
            const QString id = QString::number(1000 - index);
            entries.append(entry(id, QStringLiteral("Same"), QStringLiteral("Space"), QStringLiteral("Folder")));
            sameNamed.append(id);
            entries.append(entry(QString::number(index), QStringLiteral("Other %1").arg(index, 2, 10, QChar(u'0')),
                                 QStringLiteral("Space"), QStringLiteral("Folder")));
        }
        picker.show(entries);
        const QStringList sorted = listIDs(picker.model.filteredEntries());
        QCOMPARE(sorted.mid(40), sameNamed);
        QCOMPARE(sorted.first(), QStringLiteral("0"));
    }

    void aSearchForAFoldersNameFindsAllItsLists() {
        Picker picker;
        picker.show(tree());
        picker.model.setSearchText(QStringLiteral("releases"));
        QCOMPARE(listIDs(picker.model.filteredEntries()), (QStringList{"904", "903"}));
    }

    void aSearchForTheSeparatorFindsAllListsInFolders() {
        Picker picker;
        picker.show(tree());
        picker.model.setSearchText(QStringLiteral(" › "));
        QCOMPARE(listIDs(picker.model.filteredEntries()), (QStringList{"904", "903", "902"}));
    }

    void aListsIDIsNeverSearched() {
        Picker picker;
        picker.show(tree());
        picker.model.setSearchText(QStringLiteral("901"));
        QVERIFY(picker.model.filteredEntries().isEmpty());
        QCOMPARE(picker.model.content(), LocationPickerModel::Content::noMatch);
    }

    void theSearchIgnoresCaseAndSpacesAndTabsAroundButNotLineBreaks() {
        Picker picker;
        picker.show(tree());
        picker.model.setSearchText(QStringLiteral(" \tSUPPORT Q\t "));
        QCOMPARE(picker.model.query(), QStringLiteral("support q"));
        QCOMPARE(listIDs(picker.model.filteredEntries()), QStringList{"905"});
        picker.model.setSearchText(QStringLiteral("support\n"));
        QVERIFY(picker.model.filteredEntries().isEmpty());
        picker.model.setSearchText(QStringLiteral("operations"));
        QCOMPARE(listIDs(picker.model.filteredEntries()), QStringList{"905"});
    }

    void theContentFollowsLoadingFailureNoMatchAndEmptyInThatOrder() {
        Picker picker;
        picker.fake.service.answer(QStringLiteral("team/w/space"), 500, R"({"err":"Space trouble","ECODE":"X"})");
        picker.fake.service.hold(QStringLiteral("team/w/space"));
        picker.hierarchy.setWorkspaces({workspace(QStringLiteral("w"))});
        picker.model.appear();
        QVERIFY(picker.model.isLoading());
        QCOMPARE(picker.model.content(), LocationPickerModel::Content::loading);
        picker.fake.service.release(QStringLiteral("team/w/space"));
        QTRY_VERIFY(!picker.model.isLoading());
        QCOMPARE(picker.model.content(), LocationPickerModel::Content::failed);
        QVERIFY(picker.hierarchy.lastError().has_value());

        picker.fake.service.answer(QStringLiteral("team"), wrapped("teams", {record("w")}));
        picker.fake.service.answer(QStringLiteral("team/w/space"), wrapped("spaces", {}));
        runTask(picker.model.refresh());
        QCOMPARE(picker.model.content(), LocationPickerModel::Content::empty);
        picker.model.setSearchText(QStringLiteral("zzz"));
        QCOMPARE(picker.model.content(), LocationPickerModel::Content::noMatch);

        picker.hierarchy.setEntriesByWorkspace({{QStringLiteral("w"), tree()}});
        QCOMPARE(picker.model.content(), LocationPickerModel::Content::noMatch);
        picker.model.setSearchText(QStringLiteral("inbox"));
        QCOMPARE(picker.model.content(), LocationPickerModel::Content::rows);
    }

    void refreshFetchesTheWorkspacesAndTheListsAgainEvenWhenKnown() {
        Picker picker;
        picker.fake.service.answer(QStringLiteral("team"), wrapped("teams", {record("w"), record("new")}));
        picker.fake.service.answer(QStringLiteral("team/w/space"), wrapped("spaces", {}));
        picker.show(tree());
        runTask(picker.model.refresh());
        QCOMPARE(picker.fake.service.paths, (QStringList{QStringLiteral("team"), QStringLiteral("team/w/space")}));
        QCOMPARE(picker.hierarchy.workspaces().size(), 2);
        QVERIFY(picker.model.filteredEntries().isEmpty());
    }

    void aStarAddsABookmarkWithTheListsNameAndAddressAndSavesIt() {
        Picker picker;
        picker.show(tree());
        const ListEntry inbox = tree().first();
        const QString address = webBase + QStringLiteral("/w/v/l/li/901");
        QCOMPARE(picker.model.bookmarkAddress(inbox), address);
        QVERIFY(!picker.model.isBookmarked(inbox));
        picker.model.toggleBookmark(inbox);
        QVERIFY(picker.model.isBookmarked(inbox));
        const QList<Bookmark>& bookmarks = picker.settings.settings().bookmarks;
        QCOMPARE(bookmarks.size(), 1);
        QCOMPARE(bookmarks.first().name, QStringLiteral("Inbox"));
        QCOMPARE(bookmarks.first().urlString, address);
        QVERIFY(!bookmarks.first().id.isNull());
        const QJsonArray onDisk = picker.bookmarksOnDisk();
        QCOMPARE(onDisk.size(), 1);
        QCOMPARE(onDisk.first()[QStringLiteral("urlString")].toString(), address);

        picker.model.toggleBookmark(tree().at(1));
        QVERIFY(picker.settings.settings().bookmarks.at(1).id != picker.settings.settings().bookmarks.at(0).id);
    }

    void removingABookmarkHereAlsoRemovesAQuickLinkOfTheSameAddressTypedByHandInSettings() {
        Picker picker;
        const QString address = webBase + QStringLiteral("/w/v/l/li/901");
        const Bookmark typed{.name = QStringLiteral("My inbox"), .urlString = address};
        const Bookmark twice{.name = QStringLiteral("Inbox again"), .urlString = address};
        const Bookmark other{.name = QStringLiteral("Docs"), .urlString = webBase + QStringLiteral("/docs")};
        picker.settings.set(&AppSettings::bookmarks, QList<Bookmark>{typed, other, twice});
        picker.show(tree());
        QVERIFY(picker.model.isBookmarked(tree().first()));
        QSignalSpy bookmarksChanged(&picker.model, &LocationPickerModel::bookmarksChanged);
        picker.model.toggleBookmark(tree().first());
        QCOMPARE(picker.settings.settings().bookmarks, QList<Bookmark>{other});
        QVERIFY(!picker.model.isBookmarked(tree().first()));
        QVERIFY(bookmarksChanged.count() >= 1);
        QCOMPARE(picker.bookmarksOnDisk().size(), 1);
    }

    void aBookmarkAddressThatIsNoURLIsNeverSaved() {
        FakeClient fake;
        QTemporaryDir folder;
        SettingsStore settings(folder.filePath(QStringLiteral("settings.json")));
        HierarchyStore hierarchy(fake.client);
        LocationMemory location(settings, hierarchy, fake.client);
        LocationPickerModel model(settings, location, QUrl());
        model.toggleBookmark(tree().first());
        QVERIFY(settings.settings().bookmarks.isEmpty());
        QVERIFY(!QFile::exists(settings.filePath()));
    }

    void theRowsFollowTheSearchRowByRow() {
        Picker picker;
        picker.show(tree());
        LocationRowModel rows;
        rows.setEntries(picker.model.filteredEntries());
        QCOMPARE(rows.rowCount(), 5);
        QSignalSpy resets(&rows, &QAbstractItemModel::modelReset);
        QSignalSpy removed(&rows, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(&rows, &QAbstractItemModel::rowsInserted);
        picker.model.setSearchText(QStringLiteral("release"));
        rows.setEntries(picker.model.filteredEntries());
        QCOMPARE(listIDs(rows.entries()), (QStringList{"904", "903"}));
        QCOMPARE(inserted.count(), 0);
        QCOMPARE(resets.count(), 0);
        QVERIFY(removed.count() >= 1);
        picker.model.setSearchText(QString());
        rows.setEntries(picker.model.filteredEntries());
        QCOMPARE(rows.entries(), picker.model.filteredEntries());
        QCOMPARE(rows.data(rows.index(2), LocationRowModel::PathRole).toString(), QStringLiteral("Product › Releases"));
        QCOMPARE(rows.data(rows.index(2), LocationRowModel::NameRole).toString(), QStringLiteral("2.3 release"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(LocationPickerModelTest)
#include "LocationPickerModelTest.moc"
