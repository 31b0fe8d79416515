#include "desktop/settings/FieldVisibilityViewModel.h"
#include "desktop/settings/GeneralSettingsViewModel.h"
#include "desktop/settings/QuickLinksViewModel.h"
#include "desktop/settings/TemplateSettingsViewModel.h"
#include "platform/linux/AutostartEntry.h"
#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/SettingsFileTesting.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

// The view models of the settings window's "Fields", "Templates" and "General" tabs and of its quick links: each
// change lands in the settings file at once. Against norvane-sandbox where the account's
// workspaces, lists or tasks matter.
class SettingsViewModelsTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;
    QTemporaryDir m_autostart;

    AppState& app() { return m_fixture->app(); }
    QJsonObject settingsFile() const { return SettingsFileTesting::stored(m_fixture->settingsPath()); }
    QStringList storedSet(const QString& key) const {
        return SettingsFileTesting::storedSet(m_fixture->settingsPath(), key);
    }

    // Signed in as the first demo user, with the list `listID` of Northwind chosen when given.
    AppState& signedIn(const QString& listID = {}) {
        if (!m_sandbox.reset()) {
            qFatal("The sandbox could not be reset");
        }
        m_fixture = std::make_unique<AppStateFixture>(&m_sandbox);
        AppState& state = m_fixture->start();
        if (runTask(state.signIn(m_sandbox.token())).has_value()) {
            qFatal("Signing in failed");
        }
        if (!listID.isEmpty() && !m_fixture->chooseNorthwindList(listID)) {
            qFatal("The list %s never appeared", qPrintable(listID));
        }
        return state;
    }

    AutostartEntry loginItem() {
        return AutostartEntry(m_autostart.filePath(QStringLiteral("autostart")), QStringLiteral("/usr/bin/norvanebar"));
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = std::make_unique<AppStateFixture>();
        m_fixture->start();
    }

    void cleanup() {
        m_fixture.reset();
        QDir(m_autostart.filePath(QStringLiteral("autostart"))).removeRecursively();
        QFile::remove(m_autostart.filePath(QStringLiteral("autostart")));
    }

    void theDefaultFieldSwitchesListTheBuiltInFieldsAndWriteWhichShow() {
        FieldVisibilityViewModel fields(app().settings(), app().location(), app().serviceAddresses(),
                                        m_fixture->linkActions());
        FieldToggleModel& model = *fields.defaultFields();
        QCOMPARE(model.rowCount(), 5);
        QStringList labels;
        QList<bool> checked;
        for (int row = 0; row < model.rowCount(); ++row) {
            labels.append(model.data(model.index(row), FieldToggleModel::LabelRole).toString());
            checked.append(model.data(model.index(row), FieldToggleModel::CheckedRole).toBool());
        }
        QCOMPARE(labels, (QStringList{QStringLiteral("Status"), QStringLiteral("Assignee"), QStringLiteral("Priority"),
                                      QStringLiteral("Due date"), QStringLiteral("Tags")}));
        QCOMPARE(checked, (QList<bool>{true, true, false, true, false}));

        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QVERIFY(model.setData(model.index(4), true, FieldToggleModel::CheckedRole));
        QVERIFY(model.setData(model.index(0), false, FieldToggleModel::CheckedRole));
        QCOMPARE(storedSet(QStringLiteral("visibleDefaultFields")),
                 (QStringList{QStringLiteral("assignee"), QStringLiteral("dueDate"), QStringLiteral("tags")}));
        QCOMPARE(changed.count(), 2);
        // Only the switch's role can be set.
        QVERIFY(!model.setData(model.index(1), QStringLiteral("Owner"), FieldToggleModel::LabelRole));
        QVERIFY(!model.setData(model.index(5), true, FieldToggleModel::CheckedRole));
        QVERIFY(model.data(model.index(4), FieldToggleModel::CheckedRole).toBool());
        QVERIFY(!model.data(model.index(0), FieldToggleModel::CheckedRole).toBool());
    }

    void withoutAListThereAreNoCustomFieldsToShow() {
        FieldVisibilityViewModel fields(app().settings(), app().location(), app().serviceAddresses(),
                                        m_fixture->linkActions());
        QVERIFY(!fields.hasList());
        QCOMPARE(fields.customFieldCount(), 0);
        fields.openList();
        QVERIFY(m_fixture->linkActions().opened().isEmpty());
    }

    void theCustomFieldsOfTheComposersListAreStoredAsTheHiddenOnes() {
        signedIn(SandboxDemo::inboxListID);
        FieldVisibilityViewModel fields(app().settings(), app().location(), app().serviceAddresses(),
                                        m_fixture->linkActions());
        QVERIFY(fields.hasList());
        QCOMPARE(fields.listName(), QStringLiteral("Inbox"));
        QTRY_VERIFY_WITH_TIMEOUT(app().currentContext()->fields().size() > 1, 10000);
        QCOMPARE(fields.customFieldCount(), int(app().currentContext()->fields().size()));
        FieldToggleModel& model = *fields.customFields();
        QCOMPARE(model.data(model.index(0), FieldToggleModel::LabelRole).toString(),
                 app().currentContext()->fields()[0].name);
        QVERIFY(model.data(model.index(0), FieldToggleModel::CheckedRole).toBool());

        const QString firstID = app().currentContext()->fields()[0].id;
        const QString secondID = app().currentContext()->fields()[1].id;
        QVERIFY(model.setData(model.index(0), false, FieldToggleModel::CheckedRole));
        QVERIFY(model.setData(model.index(1), false, FieldToggleModel::CheckedRole));
        QStringList hidden{firstID, secondID};
        hidden.sort();
        QCOMPARE(storedSet(QStringLiteral("hiddenCustomFieldIDs")), hidden);
        QVERIFY(!model.data(model.index(0), FieldToggleModel::CheckedRole).toBool());
        QVERIFY(model.setData(model.index(0), true, FieldToggleModel::CheckedRole));
        QCOMPARE(storedSet(QStringLiteral("hiddenCustomFieldIDs")), QStringList{secondID});
    }

    void aListWithoutCustomFieldsOffersItsPageInNorvane() {
        signedIn(SandboxDemo::supportListID);
        FieldVisibilityViewModel fields(app().settings(), app().location(), app().serviceAddresses(),
                                        m_fixture->linkActions());
        QTRY_VERIFY(!app().currentContext()->isLoading());
        QCOMPARE(fields.customFieldCount(), 0);
        fields.openList();
        QCOMPARE(
            m_fixture->linkActions().opened(),
            QList<QUrl>{QUrl(app().serviceAddresses().listURL(SandboxDemo::northwindID, SandboxDemo::supportListID))});
    }

    void turningTheDueCountOnSavesShowsAndFetchesTheCount() {
        signedIn();
        QSignalSpy badge(&app().badge(), &StatusItemBadgeModel::changed);
        AutostartEntry entry = loginItem();
        GeneralSettingsViewModel general(app(), entry);
        QVERIFY(!general.showDueCountBadge());
        QSignalSpy changed(&general, &GeneralSettingsViewModel::settingsChanged);
        general.setShowDueCountBadge(true);
        QCOMPARE(settingsFile().value(QStringLiteral("showDueCountBadge")), QJsonValue(true));
        QVERIFY(general.showDueCountBadge());
        QVERIFY(changed.count() >= 1);
        QVERIFY(app().badge().showDueCountBadge());
        QCOMPARE(badge.count(), 1);
        // Then the user's tasks arrive and the badge shows their count.
        QTRY_COMPARE_WITH_TIMEOUT(badge.count(), 2, 15000);
        QVERIFY(app().badge().dueCount() > 0);
        QCOMPARE(app().badge().badge().text, QString::number(app().badge().dueCount()));
    }

    void turningTheDueCountOffHidesItWithoutFetching() {
        signedIn();
        app().settings().set(&AppSettings::showDueCountBadge, true);
        QTRY_VERIFY_WITH_TIMEOUT(app().badge().dueCount() > 0, 15000);
        QSignalSpy badge(&app().badge(), &StatusItemBadgeModel::changed);
        QSignalSpy counted(&app().dueCount(), &DueCountQuery::dueCountChanged);
        AutostartEntry entry = loginItem();
        GeneralSettingsViewModel general(app(), entry);
        general.setShowDueCountBadge(false);
        QCOMPARE(settingsFile().value(QStringLiteral("showDueCountBadge")), QJsonValue(false));
        QCOMPARE(badge.count(), 1);
        QCOMPARE(app().badge().badge().text, QString());
        QVERIFY(!runTask(app().dueCount().refresh()));
        QCOMPARE(counted.count(), 0);
    }

    void theDefaultWorkspaceIsOneOfTheAccountsWorkspaces() {
        signedIn();
        AutostartEntry entry = loginItem();
        GeneralSettingsViewModel general(app(), entry);
        const QList<Workspace>& workspaces = app().hierarchy().workspaces();
        QVERIFY(workspaces.size() >= 2);
        QStringList names;
        for (const Workspace& workspace : workspaces) {
            names.append(workspace.name);
        }
        QCOMPARE(general.workspaceNames(), names);
        QSignalSpy moved(&general, &GeneralSettingsViewModel::preferredWorkspaceIndexChanged);
        general.setPreferredWorkspaceIndex(1);
        QCOMPARE(settingsFile().value(QStringLiteral("preferredWorkspaceID")).toString(), workspaces[1].id);
        QCOMPARE(general.preferredWorkspaceIndex(), 1);
        QVERIFY(moved.count() >= 1);
        // A place that is no workspace changes nothing.
        general.setPreferredWorkspaceIndex(int(workspaces.size()));
        QCOMPARE(settingsFile().value(QStringLiteral("preferredWorkspaceID")).toString(), workspaces[1].id);
    }

    void withoutWorkspacesNoneIsChosen() {
        AutostartEntry entry = loginItem();
        GeneralSettingsViewModel general(app(), entry);
        QVERIFY(general.workspaceNames().isEmpty());
        QCOMPARE(general.preferredWorkspaceIndex(), -1);
    }

    void theBranchNameFormatIsSavedAndPreviewedForJohnSmithWhenSignedOut() {
        AutostartEntry entry = loginItem();
        GeneralSettingsViewModel general(app(), entry);
        QCOMPARE(general.branchNameFormat(), QStringLiteral(":taskId:_:taskName:_:username:"));
        QCOMPARE(general.branchNamePreview(), QStringLiteral("NV-ae27de_Auto-generated-naming_John-Smith"));
        QSignalSpy preview(&general, &GeneralSettingsViewModel::branchNamePreviewChanged);
        general.setBranchNameFormat(QStringLiteral("feature/:taskId:-:username:"));
        QCOMPARE(settingsFile().value(QStringLiteral("branchNameFormat")).toString(),
                 QStringLiteral("feature/:taskId:-:username:"));
        QCOMPARE(general.branchNamePreview(), QStringLiteral("feature/NV-ae27de-John-Smith"));
        QVERIFY(preview.count() >= 1);
        // An empty format is kept as it is and previews the default one.
        general.setBranchNameFormat(QString());
        QCOMPARE(settingsFile().value(QStringLiteral("branchNameFormat")).toString(), QString());
        QCOMPARE(general.branchNamePreview(), QStringLiteral("NV-ae27de_Auto-generated-naming_John-Smith"));
    }

    void theBranchNamePreviewNamesTheSignedInUser() {
        signedIn();
        AutostartEntry entry = loginItem();
        GeneralSettingsViewModel general(app(), entry);
        QCOMPARE(general.branchNamePreview(), QStringLiteral("NV-ae27de_Auto-generated-naming_Ada-Okafor"));
    }

    void theReminderLeadTimeIsChosenAmongItsChoices() {
        AutostartEntry entry = loginItem();
        GeneralSettingsViewModel general(app(), entry);
        QCOMPARE(GeneralSettingsViewModel::reminderLeadLabels(),
                 (QStringList{QStringLiteral("At due time"), QStringLiteral("5 minutes before"),
                              QStringLiteral("10 minutes before"), QStringLiteral("15 minutes before"),
                              QStringLiteral("30 minutes before"), QStringLiteral("60 minutes before")}));
        QCOMPARE(general.reminderLeadIndex(), 3);
        general.setReminderLeadIndex(0);
        QCOMPARE(settingsFile().value(QStringLiteral("defaultReminderLeadMinutes")), QJsonValue(0));
        QCOMPARE(general.reminderLeadIndex(), 0);
        general.setReminderLeadIndex(5);
        QCOMPARE(settingsFile().value(QStringLiteral("defaultReminderLeadMinutes")), QJsonValue(60));
        // A time the file holds but the choices don't shows none of them.
        app().settings().set(&AppSettings::defaultReminderLeadMinutes, qint64(7));
        QCOMPARE(general.reminderLeadIndex(), -1);
    }

    void launchAtLoginWritesAndRemovesTheAutostartEntry() {
        AutostartEntry entry = loginItem();
        GeneralSettingsViewModel general(app(), entry);
        QVERIFY(!general.launchAtLogin());
        QSignalSpy changed(&general, &GeneralSettingsViewModel::launchAtLoginChanged);
        general.setLaunchAtLogin(true);
        QVERIFY(general.launchAtLogin());
        QCOMPARE(general.loginItemError(), QString());
        QVERIFY(QFile::exists(entry.filePath()));
        QCOMPARE(changed.count(), 1);
        general.setLaunchAtLogin(false);
        QVERIFY(!general.launchAtLogin());
        QVERIFY(!QFile::exists(entry.filePath()));
        // A new pane reads what is on disk.
        QCOMPARE(entry.setEnabled(true), std::nullopt);
        QVERIFY(GeneralSettingsViewModel(app(), entry).launchAtLogin());
    }

    void aLoginItemThatCannotBeWrittenShowsItsMessageAndTheSwitchFallsBack() {
        // A file where the autostart folder should be: the folder can't be made, root or not.
        QFile blocker(m_autostart.filePath(QStringLiteral("autostart")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        AutostartEntry entry = loginItem();
        GeneralSettingsViewModel general(app(), entry);
        QSignalSpy changed(&general, &GeneralSettingsViewModel::launchAtLoginChanged);
        general.setLaunchAtLogin(true);
        QVERIFY(!general.launchAtLogin());
        QVERIFY2(general.loginItemError().contains(m_autostart.filePath(QStringLiteral("autostart"))),
                 qPrintable(general.loginItemError()));
        // The switch the user moved hears that it stands where it stood.
        QCOMPARE(changed.count(), 1);
        // The settings file is not where launch at login is kept.
        QVERIFY(!settingsFile().contains(QStringLiteral("launchAtLogin")));
    }

    void aQuickLinkIsAddedFromTheTwoFieldsWhichThenEmpty() {
        QuickLinksViewModel links(app().settings(), app().serviceAddresses());
        QCOMPARE(links.addressPlaceholder(), app().serviceAddresses().webBaseURL.toString() + QStringLiteral("…"));
        QVERIFY(links.links().isEmpty());
        QVERIFY(!links.canAdd());
        links.setNewName(QStringLiteral("Sprint board"));
        QVERIFY(!links.canAdd());
        links.setNewURL(QStringLiteral("ftp://example.com/board"));
        QVERIFY(!links.canAdd());
        links.add();
        QVERIFY(app().settings().settings().bookmarks.isEmpty());
        QCOMPARE(links.newName(), QStringLiteral("Sprint board"));

        QSignalSpy listed(&links, &QuickLinksViewModel::linksChanged);
        links.setNewURL(QStringLiteral(" https://example.com/board "));
        QVERIFY(links.canAdd());
        links.add();
        QCOMPARE(links.newName(), QString());
        QCOMPARE(links.newURL(), QString());
        QCOMPARE(listed.count(), 1);
        const QJsonArray stored = settingsFile().value(QStringLiteral("bookmarks")).toArray();
        QCOMPARE(stored.size(), 1);
        QCOMPARE(stored[0][QStringLiteral("name")].toString(), QStringLiteral("Sprint board"));
        QCOMPARE(stored[0][QStringLiteral("urlString")].toString(), QStringLiteral("https://example.com/board"));
        QCOMPARE(links.links().size(), 1);
        QCOMPARE(links.links()[0].name, QStringLiteral("Sprint board"));

        links.remove(links.links()[0].id);
        QVERIFY(settingsFile().value(QStringLiteral("bookmarks")).toArray().isEmpty());
        QVERIFY(links.links().isEmpty());
        QCOMPARE(listed.count(), 2);
    }

    void theTemplateRowsChangeOneByOneAndOnlyAMoveRebuildsThem() {
        TemplateListModel model;
        TaskTemplate first;
        first.name = QStringLiteral("First");
        TaskTemplate second;
        second.name = QStringLiteral("Second");
        model.setTemplates({first, second});
        QCOMPARE(model.rowCount(), 2);

        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        TaskTemplate renamed = second;
        renamed.name = QStringLiteral("Renamed");
        renamed.listPath = QStringLiteral("Product › Inbox");
        model.setTemplates({first, renamed});
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].toModelIndex().row(), 1);
        QCOMPARE(model.data(model.index(1), TemplateListModel::NameRole).toString(), QStringLiteral("Renamed"));
        QCOMPARE(model.data(model.index(1), TemplateListModel::ListPathRole).toString(),
                 QStringLiteral("Product › Inbox"));
        QCOMPARE(model.data(model.index(0), TemplateListModel::ListPathRole).toString(), QString());

        TaskTemplate third;
        model.setTemplates({first, renamed, third});
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted[0][1].toInt(), 2);
        model.setTemplates({renamed, third});
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed[0][1].toInt(), 0);
        QCOMPARE(reset.count(), 0);
        QCOMPARE(model.data(model.index(0), TemplateListModel::IdRole).toString(),
                 renamed.id.toString(QUuid::WithoutBraces));

        model.setTemplates({third, renamed});
        QCOMPARE(reset.count(), 1);
        QCOMPARE(model.templates(), (QList<TaskTemplate>{third, renamed}));
    }

    void aTemplateIsPinnedThroughItsOwnPickerWithoutMovingTheComposer() {
        AppState& state = signedIn(SandboxDemo::inboxListID);
        state.settings().modify([](AppSettings& settings) { settings.templates = {TaskTemplate{}}; });
        TemplateSettingsViewModel templates(state.settings(), state.location(), state.serviceAddresses().webBaseURL);
        QSignalSpy rowsChanged(templates.rows(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QList<int>)));
        templates.edit(0);
        QVERIFY(templates.isEditing());
        QCOMPARE(templates.editingName(), QStringLiteral("Template"));
        QCOMPARE(templates.picker()->selectedListID(), QString());

        LocationPickerViewModel& picker = *templates.picker();
        picker.appear();
        QTRY_VERIFY(picker.rowOf(SandboxDemo::supportListID) >= 0);
        picker.choose(picker.rowOf(SandboxDemo::supportListID));
        QCOMPARE(templates.editingListPath(), QStringLiteral("Operations › Support queue"));
        QCOMPARE(picker.selectedListID(), SandboxDemo::supportListID);
        QCOMPARE(state.currentContext()->entry().id(), SandboxDemo::inboxListID);
        // Nothing is stored before the sheet is saved.
        QVERIFY(!state.settings().settings().templates[0].listID);

        templates.save(QStringLiteral("Support"), QStringLiteral("Customer: "), QStringLiteral("Steps"));
        QVERIFY(!templates.isEditing());
        QCOMPARE(rowsChanged.count(), 1);
        const QJsonObject stored = settingsFile().value(QStringLiteral("templates")).toArray().at(0).toObject();
        QCOMPARE(stored.value(QStringLiteral("name")).toString(), QStringLiteral("Support"));
        QCOMPARE(stored.value(QStringLiteral("listID")).toString(), SandboxDemo::supportListID);
        QCOMPARE(stored.value(QStringLiteral("listPath")).toString(), QStringLiteral("Operations › Support queue"));
        QCOMPARE(stored.value(QStringLiteral("taskName")).toString(), QStringLiteral("Customer: "));
        QCOMPARE(stored.value(QStringLiteral("descriptionMarkdown")).toString(), QStringLiteral("Steps"));
    }

    void aNewTemplateCancelledIsDroppedAndOneSavedGoesLast() {
        TemplateSettingsViewModel templates(app().settings(), app().location(), app().serviceAddresses().webBaseURL);
        QVERIFY(templates.isEmpty());
        QSignalSpy emptiness(&templates, &TemplateSettingsViewModel::isEmptyChanged);
        templates.create();
        QVERIFY(templates.isEditing());
        QCOMPARE(templates.editingName(), QStringLiteral("Template"));
        QCOMPARE(templates.editingListPath(), QString());
        templates.cancel();
        QVERIFY(!templates.isEditing());
        QVERIFY(app().settings().settings().templates.isEmpty());
        QVERIFY(templates.isEmpty());

        templates.create();
        templates.save(QStringLiteral("Template"), QString(), QString());
        QCOMPARE(settingsFile().value(QStringLiteral("templates")).toArray().size(), 1);
        QVERIFY(!templates.isEmpty());
        QCOMPARE(emptiness.count(), 1);
        templates.remove(0);
        QVERIFY(settingsFile().value(QStringLiteral("templates")).toArray().isEmpty());
        QVERIFY(templates.isEmpty());
        QCOMPARE(emptiness.count(), 2);
    }

    void otherChangesOfTheSettingsLeaveTheLinksAsTheyAre() {
        QuickLinksViewModel links(app().settings(), app().serviceAddresses());
        QSignalSpy listed(&links, &QuickLinksViewModel::linksChanged);
        app().settings().set(&AppSettings::showDueCountBadge, true);
        QCOMPARE(listed.count(), 0);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(SettingsViewModelsTest)
#include "SettingsViewModelsTest.moc"
