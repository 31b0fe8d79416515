#include "desktop/settings/SettingsWindow.h"
#include "desktop/shell/ColorSchemePalette.h"
#include "desktop/shell/PopoverWindow.h"
#include "platform/linux/AutostartEntry.h"
#include "support/AppStateFixture.h"
#include "support/ManualColorScheme.h"
#include "support/ManualGlobalShortcuts.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SettingsFileTesting.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QQuickItem>
#include <QTemporaryDir>
#include <QTest>

// A person goes through the settings window by keyboard alone, against norvane-sandbox: every
// control of the "Fields", "Templates" and "General" tabs is reached with Tab, each setting is
// changed and read back from the settings file.
class SettingsWindowTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;
    QTemporaryDir m_home;
    std::unique_ptr<AutostartEntry> m_loginItem;
    std::unique_ptr<ManualGlobalShortcuts> m_desktopShortcuts;
    std::unique_ptr<HotKeyManager> m_hotKeys;
    std::unique_ptr<SettingsWindow> m_window;

    AppState& app() { return m_fixture->app(); }
    QJsonObject settingsFile() const { return SettingsFileTesting::stored(m_fixture->settingsPath()); }
    QStringList storedSet(const QString& key) const {
        return SettingsFileTesting::storedSet(m_fixture->settingsPath(), key);
    }
    QQuickView& view() { return m_window->view(); }
    QString autostartFolder() const { return m_home.filePath(QStringLiteral("autostart")); }

    QQuickItem* item(const QString& objectName) { return QuickItems::visualChild(view().contentItem(), objectName); }

    QJsonArray templatesInFile() const { return settingsFile().value(QStringLiteral("templates")).toArray(); }

    // Stores templates of these names, the first pinned to Inbox.
    void storeTemplates(const QStringList& names) {
        app().settings().modify([&names](AppSettings& settings) {
            for (const QString& name : names) {
                TaskTemplate stored;
                stored.name = name;
                stored.taskName = name + QStringLiteral(" task");
                settings.templates.append(stored);
            }
            settings.templates[0].listID = SandboxDemo::inboxListID;
            settings.templates[0].listPath = QStringLiteral("Product › Inbox");
        });
    }

    // The window on the account tab, then on "Templates" by Ctrl+Tab.
    void showTemplatesByKeyboard() {
        show(SettingsTab::account);
        key(Qt::Key_Tab, Qt::ControlModifier);
        key(Qt::Key_Tab, Qt::ControlModifier);
        QTRY_COMPARE(m_window->currentTab(), int(SettingsTab::templates));
    }

    // The sheet that edits a template, a popup out of reach of the visual tree while closed.
    QObject* sheet() { return view().rootObject()->findChild<QObject*>(QStringLiteral("editTemplateSheet")); }
    bool sheetIsOpen() { return sheet()->property("opened").toBool(); }
    bool sheetIsShown() { return sheet()->property("visible").toBool(); }

    QString focused() {
        const QQuickItem* focus = view().activeFocusItem();
        return focus ? focus->objectName() : QString();
    }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&view(), key, modifiers);
    }

    void type(const QString& text) {
        for (const QChar character : text) {
            QTest::sendKeyEvent(QTest::Click, &view(), Qt::Key_unknown, QString(character), Qt::NoModifier);
        }
    }

    // Presses Tab until the control of this name has the keyboard: false after a full round without.
    bool tabTo(const QString& objectName) {
        for (int presses = 0; presses < 80 && focused() != objectName; ++presses) {
            key(Qt::Key_Tab);
        }
        return focused() == objectName;
    }

    // The names of the controls that Tab reaches in a full round from where the keyboard is.
    QSet<QString> tabRound() {
        QSet<QString> reached;
        for (int presses = 0; presses < 80; ++presses) {
            key(Qt::Key_Tab);
            reached.insert(focused());
        }
        return reached;
    }

    // The window shown on `tab` and active.
    void show(SettingsTab tab) {
        m_window->showTab(tab);
        QVERIFY(QTest::qWaitForWindowActive(&view()));
        QTRY_COMPARE(m_window->currentTab(), int(tab));
    }

    // A new window over a central state signed in as the first demo user with `listID` chosen.
    void openSignedIn(const QString& listID) {
        m_window.reset();
        m_fixture.reset();
        QVERIFY(m_sandbox.reset());
        m_fixture = std::make_unique<AppStateFixture>(&m_sandbox);
        AppState& state = m_fixture->start();
        QCOMPARE(runTask(state.signIn(m_sandbox.token())), std::nullopt);
        QVERIFY(m_fixture->chooseNorthwindList(listID));
        QTRY_VERIFY_WITH_TIMEOUT(!state.currentContext()->isLoading(), 10000);
        m_window = std::make_unique<SettingsWindow>(state, *m_loginItem, *m_hotKeys);
    }

private slots:
    void initTestCase() {
        PopoverWindow::configureQuick();
        QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString()));
    }

    void init() {
        m_loginItem = std::make_unique<AutostartEntry>(autostartFolder(), QStringLiteral("/usr/bin/norvanebar"));
        m_desktopShortcuts = std::make_unique<ManualGlobalShortcuts>();
        m_hotKeys = std::make_unique<HotKeyManager>(*m_desktopShortcuts);
        openSignedIn(SandboxDemo::inboxListID);
    }

    void cleanup() {
        m_window.reset();
        m_hotKeys.reset();
        m_fixture.reset();
        QDir(autostartFolder()).removeRecursively();
        QFile::remove(autostartFolder());
    }

    void theWindowShowsItsFiveTabsInOrderWithTheirSymbols() {
        show(SettingsTab::fields);
        QCOMPARE(view().title(), QStringLiteral("NorvaneBar Settings"));
        const QStringList names{QStringLiteral("accountTab"), QStringLiteral("fieldsTab"),
                                QStringLiteral("templatesTab"), QStringLiteral("generalTab"),
                                QStringLiteral("attachmentsTab")};
        const QStringList labels{QStringLiteral("Account"), QStringLiteral("Fields"), QStringLiteral("Templates"),
                                 QStringLiteral("General"), QStringLiteral("Attachments")};
        const QStringList symbols{QStringLiteral("person.crop.circle"), QStringLiteral("slider.horizontal.3"),
                                  QStringLiteral("doc.on.doc"), QStringLiteral("gearshape"),
                                  QStringLiteral("paperclip")};
        for (qsizetype index = 0; index < names.size(); ++index) {
            QQuickItem* tab = item(names[index]);
            QVERIFY2(tab, qPrintable(names[index]));
            QCOMPARE(tab->property("text").toString(), labels[index]);
            QCOMPARE(tab->property("symbol").toString(), symbols[index]);
        }
    }

    void controlTabAndControlPageDownMoveThroughTheTabs() {
        show(SettingsTab::account);
        key(Qt::Key_Tab, Qt::ControlModifier);
        QTRY_COMPARE(m_window->currentTab(), int(SettingsTab::fields));
        key(Qt::Key_PageDown, Qt::ControlModifier);
        QTRY_COMPARE(m_window->currentTab(), int(SettingsTab::templates));
        key(Qt::Key_PageDown, Qt::ControlModifier);
        QTRY_COMPARE(m_window->currentTab(), int(SettingsTab::general));
        key(Qt::Key_Tab, Qt::ControlModifier);
        QTRY_COMPARE(m_window->currentTab(), int(SettingsTab::attachments));
        key(Qt::Key_Tab, Qt::ControlModifier);
        QTRY_COMPARE(m_window->currentTab(), int(SettingsTab::account));
        key(Qt::Key_PageUp, Qt::ControlModifier);
        QTRY_COMPARE(m_window->currentTab(), int(SettingsTab::attachments));
        key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_COMPARE(m_window->currentTab(), int(SettingsTab::general));
    }

    void tabReachesEveryControlOfTheFieldsTab() {
        show(SettingsTab::fields);
        const int customFields = int(app().currentContext()->fields().size());
        QVERIFY(customFields > 1);
        const QSet<QString> reached = tabRound();
        QStringList expected{QStringLiteral("accountTab"), QStringLiteral("fieldsTab"), QStringLiteral("templatesTab"),
                             QStringLiteral("generalTab"), QStringLiteral("attachmentsTab")};
        for (int field = 0; field < 5; ++field) {
            expected.append(QStringLiteral("defaultField%1").arg(field));
        }
        for (int field = 0; field < customFields; ++field) {
            expected.append(QStringLiteral("customField%1").arg(field));
        }
        for (const QString& name : expected) {
            QVERIFY2(reached.contains(name), qPrintable(name));
        }
    }

    void tabReachesEveryControlOfTheGeneralTab() {
        app().settings().modify([](AppSettings& settings) {
            settings.bookmarks = {
                Bookmark{.name = QStringLiteral("Docs"), .urlString = QStringLiteral("https://docs.example")}};
        });
        m_window->quickLinks().setNewName(QStringLiteral("Board"));
        m_window->quickLinks().setNewURL(QStringLiteral("https://board.example"));
        show(SettingsTab::general);
        const QSet<QString> reached = tabRound();
        for (const QString& name : {QStringLiteral("composeHotKey"),
                                    QStringLiteral("screenshotHotKey"),
                                    QStringLiteral("screenshotTemplate"),
                                    QStringLiteral("screenRecordingHotKey"),
                                    QStringLiteral("screenRecordingTemplate"),
                                    QStringLiteral("recordingQuality"),
                                    QStringLiteral("recordMicrophoneByDefault"),
                                    QStringLiteral("showCursorByDefault"),
                                    QStringLiteral("includeFacecamByDefault"),
                                    QStringLiteral("facecamPosition"),
                                    QStringLiteral("facecamShape"),
                                    QStringLiteral("facecamBackground"),
                                    QStringLiteral("maxRecordingDuration"),
                                    QStringLiteral("showDueCountBadge"),
                                    QStringLiteral("defaultWorkspace"),
                                    QStringLiteral("branchNameFormat"),
                                    QStringLiteral("reminderLeadTime"),
                                    QStringLiteral("launchAtLogin"),
                                    QStringLiteral("removeQuickLink0"),
                                    QStringLiteral("quickLinkName"),
                                    QStringLiteral("quickLinkAddress"),
                                    QStringLiteral("addQuickLink")}) {
            QVERIFY2(reached.contains(name), qPrintable(name));
        }
    }

    void eachFieldSwitchIsChangedByKeyboardAndSaved() {
        show(SettingsTab::fields);
        // "Priority" is the third switch, hidden by default.
        QVERIFY(tabTo(QStringLiteral("defaultField2")));
        key(Qt::Key_Space);
        QTRY_VERIFY(storedSet(QStringLiteral("visibleDefaultFields")).contains(QStringLiteral("priority")));
        QVERIFY(item(QStringLiteral("defaultField2"))->property("checked").toBool());
        // "Status", the first, shown by default.
        QVERIFY(tabTo(QStringLiteral("defaultField0")));
        key(Qt::Key_Space);
        QTRY_VERIFY(!storedSet(QStringLiteral("visibleDefaultFields")).contains(QStringLiteral("status")));

        const QString fieldID = app().currentContext()->fields()[0].id;
        QVERIFY(tabTo(QStringLiteral("customField0")));
        QVERIFY(item(QStringLiteral("customField0"))->property("checked").toBool());
        key(Qt::Key_Space);
        QTRY_COMPARE(storedSet(QStringLiteral("hiddenCustomFieldIDs")), QStringList{fieldID});
        QVERIFY(!item(QStringLiteral("customField0"))->property("checked").toBool());
        // The keyboard stays on the switch, and turning it on again shows the field.
        QCOMPARE(focused(), QStringLiteral("customField0"));
        key(Qt::Key_Space);
        QTRY_COMPARE(storedSet(QStringLiteral("hiddenCustomFieldIDs")), QStringList());
    }

    void theCustomFieldsAreThoseOfTheComposersList() {
        show(SettingsTab::fields);
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("customFieldsHeading"))),
                 QStringLiteral("Custom Fields in “Inbox”"));
        QVERIFY(!item(QStringLiteral("noCustomFields"))->isVisible());
        QVERIFY(!item(QStringLiteral("editInNorvane"))->isVisible());
        QVERIFY(!item(QStringLiteral("noList"))->isVisible());
    }

    void aListWithoutCustomFieldsSaysSoAndLinksToItsPage() {
        openSignedIn(SandboxDemo::supportListID);
        show(SettingsTab::fields);
        QTRY_VERIFY(item(QStringLiteral("noCustomFields")) && item(QStringLiteral("noCustomFields"))->isVisible());
        QCOMPARE(item(QStringLiteral("noCustomFields"))->property("text").toString(),
                 QStringLiteral("This list has no custom fields."));
        QVERIFY(tabTo(QStringLiteral("editInNorvane")));
        QCOMPARE(item(QStringLiteral("editInNorvane"))->property("label").toString(),
                 QStringLiteral("Edit in Norvane — Support queue"));
        key(Qt::Key_Space);
        QTRY_COMPARE(
            m_fixture->linkActions().opened(),
            QList<QUrl>{QUrl(app().serviceAddresses().listURL(SandboxDemo::northwindID, SandboxDemo::supportListID))});
    }

    void withoutAListTheFieldsTabAsksForOne() {
        m_window.reset();
        m_fixture = std::make_unique<AppStateFixture>();
        m_window = std::make_unique<SettingsWindow>(m_fixture->start(), *m_loginItem, *m_hotKeys);
        show(SettingsTab::fields);
        QVERIFY(item(QStringLiteral("noList"))->isVisible());
        QCOMPARE(item(QStringLiteral("noList"))->property("text").toString(),
                 QStringLiteral("Pick a list in the composer to configure its custom fields."));
        QVERIFY(!item(QStringLiteral("customFieldsHeading"))->isVisible());
        QVERIFY(!item(QStringLiteral("editInNorvane"))->isVisible());
    }

    void eachGeneralSettingIsChangedByKeyboardAndSaved() {
        show(SettingsTab::general);

        QVERIFY(tabTo(QStringLiteral("showDueCountBadge")));
        key(Qt::Key_Space);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("showDueCountBadge")), QJsonValue(true));

        const QList<Workspace>& workspaces = app().hierarchy().workspaces();
        QVERIFY(workspaces.size() >= 2);
        QVERIFY(tabTo(QStringLiteral("defaultWorkspace")));
        const int before = item(QStringLiteral("defaultWorkspace"))->property("currentIndex").toInt();
        key(before + 1 < workspaces.size() ? Qt::Key_Down : Qt::Key_Up);
        const int after = before + 1 < workspaces.size() ? before + 1 : before - 1;
        QTRY_COMPARE(settingsFile().value(QStringLiteral("preferredWorkspaceID")).toString(), workspaces[after].id);

        QVERIFY(tabTo(QStringLiteral("branchNameFormat")));
        key(Qt::Key_A, Qt::ControlModifier);
        type(QStringLiteral("feature/:taskId:-:username:"));
        QTRY_COMPARE(settingsFile().value(QStringLiteral("branchNameFormat")).toString(),
                     QStringLiteral("feature/:taskId:-:username:"));
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("branchNamePreview"))),
                 QStringLiteral("feature/NV-ae27de-Ada-Okafor"));

        QVERIFY(tabTo(QStringLiteral("reminderLeadTime")));
        key(Qt::Key_Down);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("defaultReminderLeadMinutes")), QJsonValue(30));
        QCOMPARE(item(QStringLiteral("reminderLeadTime"))->property("currentText").toString(),
                 QStringLiteral("30 minutes before"));

        QVERIFY(tabTo(QStringLiteral("launchAtLogin")));
        key(Qt::Key_Space);
        QTRY_VERIFY(QFile::exists(m_loginItem->filePath()));
        QVERIFY(item(QStringLiteral("launchAtLogin"))->property("checked").toBool());
        key(Qt::Key_Space);
        QTRY_VERIFY(!QFile::exists(m_loginItem->filePath()));

        QVERIFY(tabTo(QStringLiteral("quickLinkName")));
        type(QStringLiteral("Sprint board"));
        key(Qt::Key_Tab);
        QCOMPARE(focused(), QStringLiteral("quickLinkAddress"));
        type(QStringLiteral("https://example.com/board"));
        key(Qt::Key_Return);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("bookmarks")).toArray().size(), 1);
        const QJsonValue link = settingsFile().value(QStringLiteral("bookmarks")).toArray().at(0);
        QCOMPARE(link[QStringLiteral("name")].toString(), QStringLiteral("Sprint board"));
        QCOMPARE(link[QStringLiteral("urlString")].toString(), QStringLiteral("https://example.com/board"));
        QCOMPARE(item(QStringLiteral("quickLinkName"))->property("text").toString(), QString());

        QVERIFY(tabTo(QStringLiteral("removeQuickLink0")));
        QCOMPARE(QuickItems::accessibleNames(item(QStringLiteral("removeQuickLink0"))).value(0),
                 QStringLiteral("Remove Sprint board"));
        key(Qt::Key_Space);
        QTRY_VERIFY(settingsFile().value(QStringLiteral("bookmarks")).toArray().isEmpty());
        QTRY_VERIFY(item(QStringLiteral("noQuickLinks"))->isVisible());
    }

    void theRecordingDefaultsAreChosenByKeyboardAndSaved() {
        app().settings().modify([](AppSettings& settings) { settings.recordingFacecamStyle.cornerRadius = 0.5; });
        show(SettingsTab::general);
        QCOMPARE(item(QStringLiteral("facecamShape"))->property("currentText").toString(), QStringLiteral("Rounded"));

        QVERIFY(tabTo(QStringLiteral("recordingQuality")));
        key(Qt::Key_Down);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("recordingQuality")).toString(), QStringLiteral("hd1080"));
        QCOMPARE(item(QStringLiteral("recordingQuality"))->property("currentText").toString(), QStringLiteral("1080p"));

        QVERIFY(tabTo(QStringLiteral("recordMicrophoneByDefault")));
        key(Qt::Key_Space);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("recordingCaptureMicrophone")), QJsonValue(false));

        QVERIFY(tabTo(QStringLiteral("includeFacecamByDefault")));
        key(Qt::Key_Space);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("recordingIncludeFacecam")), QJsonValue(true));

        QVERIFY(tabTo(QStringLiteral("facecamShape")));
        key(Qt::Key_Up);
        QTRY_COMPARE(
            settingsFile().value(QStringLiteral("recordingFacecamStyle"))[QStringLiteral("cornerRadius")].toDouble(),
            0.0);
        QCOMPARE(item(QStringLiteral("facecamShape"))->property("currentText").toString(), QStringLiteral("Square"));

        QVERIFY(tabTo(QStringLiteral("maxRecordingDuration")));
        QCOMPARE(item(QStringLiteral("maxRecordingDuration"))->property("currentText").toString(),
                 QStringLiteral("15 minutes"));
        key(Qt::Key_Down);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("recordingMaxDurationMinutes")), QJsonValue(30));
    }

    void theShortcutsAreChosenByKeyboardSavedAndBound() {
        m_hotKeys->registerHotKey(HotKeyManager::composeSlot, HotKeyPreset::optionShiftSpace, [] {});
        storeTemplates({QStringLiteral("Bug report"), QStringLiteral("Screenshot")});
        const QUuid screenshotTemplate = app().settings().settings().templates.at(1).id;
        show(SettingsTab::general);
        QVERIFY(!item(QStringLiteral("noGlobalShortcuts"))->isVisible());

        QVERIFY(tabTo(QStringLiteral("composeHotKey")));
        QCOMPARE(item(QStringLiteral("composeHotKey"))->property("currentText").toString(),
                 QStringLiteral("Alt+Shift+Space"));
        key(Qt::Key_Down);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("hotKeyPreset")).toString(),
                     QStringLiteral("controlShiftSpace"));
        QCOMPARE(m_desktopShortcuts->bound.value(1), QStringLiteral("Ctrl+Shift+Space"));

        // From "Disabled", the last, up to the one before it.
        QVERIFY(tabTo(QStringLiteral("screenshotHotKey")));
        QCOMPARE(item(QStringLiteral("screenshotHotKey"))->property("currentText").toString(),
                 QStringLiteral("Disabled"));
        key(Qt::Key_Up);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("screenshotHotKeyPreset")).toString(),
                     QStringLiteral("optionShiftN"));
        QCOMPARE(m_desktopShortcuts->bound.value(2), QStringLiteral("Alt+Shift+N"));

        QVERIFY(tabTo(QStringLiteral("screenshotTemplate")));
        QCOMPARE(item(QStringLiteral("screenshotTemplate"))->property("currentText").toString(),
                 QStringLiteral("None"));
        key(Qt::Key_Down);
        key(Qt::Key_Down);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("screenshotTemplateID")).toString(),
                     screenshotTemplate.toString(QUuid::WithoutBraces));
        key(Qt::Key_Up);
        key(Qt::Key_Up);
        QTRY_VERIFY(!settingsFile().contains(QStringLiteral("screenshotTemplateID")));
    }

    void theRecordingShortcutAndTemplateAreChosenByKeyboardSavedAndBound() {
        storeTemplates({QStringLiteral("Bug report"), QStringLiteral("Walkthrough")});
        const QUuid recordingTemplate = app().settings().settings().templates.at(1).id;
        show(SettingsTab::general);

        // From "Disabled", the last, up to the one before it.
        QVERIFY(tabTo(QStringLiteral("screenRecordingHotKey")));
        QCOMPARE(item(QStringLiteral("screenRecordingHotKey"))->property("currentText").toString(),
                 QStringLiteral("Disabled"));
        key(Qt::Key_Up);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("screenRecordingHotKeyPreset")).toString(),
                     QStringLiteral("optionShiftN"));
        QCOMPARE(m_desktopShortcuts->bound.value(3), QStringLiteral("Alt+Shift+N"));

        QVERIFY(tabTo(QStringLiteral("screenRecordingTemplate")));
        QCOMPARE(item(QStringLiteral("screenRecordingTemplate"))->property("currentText").toString(),
                 QStringLiteral("None"));
        key(Qt::Key_Down);
        key(Qt::Key_Down);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("screenRecordingTemplateID")).toString(),
                     recordingTemplate.toString(QUuid::WithoutBraces));
        QVERIFY(!settingsFile().contains(QStringLiteral("screenshotTemplateID")));
        key(Qt::Key_Up);
        key(Qt::Key_Up);
        QTRY_VERIFY(!settingsFile().contains(QStringLiteral("screenRecordingTemplateID")));
    }

    void aTakenCombinationIsStoredWithoutAMessage() {
        m_desktopShortcuts->takenByOthers.insert(QStringLiteral("Ctrl+Shift+Space"));
        show(SettingsTab::general);
        QVERIFY(tabTo(QStringLiteral("composeHotKey")));
        key(Qt::Key_Down);
        QTRY_COMPARE(settingsFile().value(QStringLiteral("hotKeyPreset")).toString(),
                     QStringLiteral("controlShiftSpace"));
        QVERIFY(!m_hotKeys->isBound(HotKeyManager::composeSlot));
        QCOMPARE(item(QStringLiteral("composeHotKey"))->property("currentText").toString(),
                 QStringLiteral("Ctrl+Shift+Space"));
        QVERIFY(!item(QStringLiteral("noGlobalShortcuts"))->isVisible());
    }

    void aDesktopThatBindsNothingGetsTheCommandToBind() {
        m_window.reset();
        ManualGlobalShortcuts nothing;
        nothing.binds = false;
        HotKeyManager hotKeys(nothing);
        m_window = std::make_unique<SettingsWindow>(app(), *m_loginItem, hotKeys);
        show(SettingsTab::general);
        QVERIFY(item(QStringLiteral("noGlobalShortcuts"))->isVisible());
        QCOMPARE(item(QStringLiteral("toggleCommand"))->property("text").toString(),
                 QStringLiteral("gdbus call --session --dest com.norvanebar.NorvaneBar --object-path "
                                "/com/norvanebar/NorvaneBar --method com.norvanebar.NorvaneBar.TogglePopover"));
        m_window.reset();
    }

    void aQuickLinkWithAnotherSchemeCannotBeAddedByKeyboard() {
        show(SettingsTab::general);
        QVERIFY(tabTo(QStringLiteral("quickLinkName")));
        type(QStringLiteral("Files"));
        key(Qt::Key_Tab);
        type(QStringLiteral("ftp://files.example.com/"));
        key(Qt::Key_Return);
        QVERIFY(!item(QStringLiteral("addQuickLink"))->isEnabled());
        QTest::qWait(100);
        QVERIFY(settingsFile().value(QStringLiteral("bookmarks")).toArray().isEmpty());
        QCOMPARE(item(QStringLiteral("quickLinkAddress"))->property("text").toString(),
                 QStringLiteral("ftp://files.example.com/"));
    }

    void withoutTemplatesTheTabSaysSoAndANewOneCancelledIsNotKept() {
        showTemplatesByKeyboard();
        QVERIFY(item(QStringLiteral("noTemplates"))->isVisible());
        QCOMPARE(item(QStringLiteral("noTemplates"))->property("text").toString(), QStringLiteral("No templates"));
        QVERIFY(item(QStringLiteral("noTemplatesHint"))->isVisible());
        QCOMPARE(item(QStringLiteral("noTemplatesHint"))->property("text").toString(),
                 QStringLiteral("Save a template from the composer menu, or create one here."));

        QVERIFY(tabTo(QStringLiteral("newTemplate")));
        key(Qt::Key_Space);
        QTRY_VERIFY(sheetIsOpen());
        QCOMPARE(sheet()->property("title").toString(), QStringLiteral("Edit Template"));
        QTRY_COMPARE(focused(), QStringLiteral("templateNameField"));
        QCOMPARE(item(QStringLiteral("templateNameField"))->property("text").toString(), QStringLiteral("Template"));
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("pinnedList"))), QStringLiteral("No pinned list"));
        key(Qt::Key_Escape);
        QTRY_VERIFY(!sheetIsShown());
        QTRY_COMPARE(focused(), QStringLiteral("newTemplate"));
        QVERIFY(app().settings().settings().templates.isEmpty());
        QVERIFY(templatesInFile().isEmpty());
        QVERIFY(item(QStringLiteral("noTemplates"))->isVisible());
        QVERIFY(view().isVisible());
    }

    void aNewTemplateIsKeptWhenSaved() {
        showTemplatesByKeyboard();
        QVERIFY(tabTo(QStringLiteral("newTemplate")));
        key(Qt::Key_Space);
        QTRY_COMPARE(focused(), QStringLiteral("templateNameField"));
        type(QStringLiteral("Standup"));
        key(Qt::Key_Return);
        QTRY_COMPARE(templatesInFile().size(), 1);
        QCOMPARE(templatesInFile()[0][QStringLiteral("name")].toString(), QStringLiteral("Standup"));
        QTRY_VERIFY(!sheetIsShown());
        QVERIFY(!item(QStringLiteral("noTemplates"))->isVisible());
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("templateRowName0"))), QStringLiteral("Standup"));
        QTRY_COMPARE(focused(), QStringLiteral("newTemplate"));
    }

    void tabReachesEveryControlOfTheTemplatesTabAndOfTheSheet() {
        storeTemplates({QStringLiteral("Bug report"), QStringLiteral("Standup")});
        showTemplatesByKeyboard();
        QVERIFY(!item(QStringLiteral("noTemplates"))->isVisible());
        const QSet<QString> reached = tabRound();
        for (const QString& name :
             {QStringLiteral("templatesTab"), QStringLiteral("editTemplate0"), QStringLiteral("deleteTemplate0"),
              QStringLiteral("editTemplate1"), QStringLiteral("deleteTemplate1"), QStringLiteral("newTemplate")}) {
            QVERIFY2(reached.contains(name), qPrintable(name));
        }
        QVERIFY(tabTo(QStringLiteral("editTemplate0")));
        key(Qt::Key_Space);
        QTRY_COMPARE(focused(), QStringLiteral("templateNameField"));
        const QSet<QString> inSheet = tabRound();
        QCOMPARE(inSheet, (QSet<QString>{QStringLiteral("templateNameField"), QStringLiteral("pinnedListButton"),
                                         QStringLiteral("clearPinnedList"), QStringLiteral("templateTaskNameField"),
                                         QStringLiteral("templateDescriptionField"),
                                         QStringLiteral("cancelEditTemplate"), QStringLiteral("saveEditTemplate")}));
        QCOMPARE(QuickItems::unnamedControls(view().contentItem()), QStringList());
    }

    void aTemplateIsRenamedAndPinnedThroughThePickerByKeyboardAndSaved() {
        storeTemplates({QStringLiteral("Bug report"), QStringLiteral("Standup")});
        const QUuid id = app().settings().settings().templates[1].id;
        showTemplatesByKeyboard();
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("templateRowList1"))), QStringLiteral("No pinned list"));
        QVERIFY(tabTo(QStringLiteral("editTemplate1")));
        QCOMPARE(QuickItems::accessibleNames(item(QStringLiteral("editTemplate1"))).value(0),
                 QStringLiteral("Edit Standup"));
        key(Qt::Key_Space);
        QTRY_COMPARE(focused(), QStringLiteral("templateNameField"));
        key(Qt::Key_A, Qt::ControlModifier);
        type(QStringLiteral("Release check"));

        key(Qt::Key_Tab);
        QCOMPARE(focused(), QStringLiteral("pinnedListButton"));
        key(Qt::Key_Return);
        QTRY_COMPARE(focused(), QStringLiteral("locationSearch"));
        type(QStringLiteral("2.4 release"));
        QTRY_COMPARE(m_window->templates().picker()->rowOf(SandboxDemo::releaseListID), 0);
        key(Qt::Key_Return);
        QTRY_COMPARE(focused(), QStringLiteral("pinnedListButton"));
        QVERIFY(sheetIsOpen());
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("pinnedList"))),
                 QStringLiteral("Product › Releases › 2.4 release"));
        // The composer's list stays.
        QCOMPARE(app().currentContext()->entry().id(), SandboxDemo::inboxListID);

        key(Qt::Key_Tab);
        QCOMPARE(focused(), QStringLiteral("clearPinnedList"));
        key(Qt::Key_Tab);
        QCOMPARE(focused(), QStringLiteral("templateTaskNameField"));
        key(Qt::Key_A, Qt::ControlModifier);
        type(QStringLiteral("Check <b>2.4</b> & ship"));
        key(Qt::Key_Tab);
        QCOMPARE(focused(), QStringLiteral("templateDescriptionField"));
        type(QStringLiteral("Steps"));
        key(Qt::Key_Return);
        type(QStringLiteral("1. Tag"));
        QVERIFY(sheetIsOpen());
        // Return in the description makes a new line; Ctrl+Return saves.
        QCOMPARE(app().settings().settings().templates[1].name, QStringLiteral("Standup"));
        key(Qt::Key_Return, Qt::ControlModifier);

        QTRY_VERIFY(!sheetIsShown());
        const QJsonArray stored = templatesInFile();
        QCOMPARE(stored.size(), 2);
        const QJsonValue edited = stored[1];
        QCOMPARE(QUuid(edited[QStringLiteral("id")].toString()), id);
        QCOMPARE(edited[QStringLiteral("name")].toString(), QStringLiteral("Release check"));
        QCOMPARE(edited[QStringLiteral("listID")].toString(), SandboxDemo::releaseListID);
        QCOMPARE(edited[QStringLiteral("listPath")].toString(), QStringLiteral("Product › Releases › 2.4 release"));
        QCOMPARE(edited[QStringLiteral("taskName")].toString(), QStringLiteral("Check <b>2.4</b> & ship"));
        QCOMPARE(edited[QStringLiteral("descriptionMarkdown")].toString(), QStringLiteral("Steps\n1. Tag"));
        QCOMPARE(stored[0][QStringLiteral("name")].toString(), QStringLiteral("Bug report"));

        QCOMPARE(QuickItems::plainText(item(QStringLiteral("templateRowName1"))), QStringLiteral("Release check"));
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("templateRowList1"))),
                 QStringLiteral("Product › Releases › 2.4 release"));
        QTRY_COMPARE(focused(), QStringLiteral("editTemplate1"));
    }

    void returnInANameFieldSavesAndClearThenEscapeKeepsThePinnedList() {
        storeTemplates({QStringLiteral("Bug report")});
        showTemplatesByKeyboard();
        QVERIFY(tabTo(QStringLiteral("editTemplate0")));
        key(Qt::Key_Space);
        QTRY_COMPARE(focused(), QStringLiteral("templateNameField"));
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("pinnedList"))), QStringLiteral("Product › Inbox"));
        QVERIFY(tabTo(QStringLiteral("clearPinnedList")));
        key(Qt::Key_Space);
        QTRY_COMPARE(QuickItems::plainText(item(QStringLiteral("pinnedList"))), QStringLiteral("No pinned list"));
        QCOMPARE(focused(), QStringLiteral("pinnedListButton"));
        key(Qt::Key_Escape);
        QTRY_VERIFY(!sheetIsShown());
        QVERIFY(view().isVisible());
        QCOMPARE(app().settings().settings().templates[0].listID, SandboxDemo::inboxListID);

        key(Qt::Key_Space);
        QTRY_COMPARE(focused(), QStringLiteral("templateNameField"));
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("pinnedList"))), QStringLiteral("Product › Inbox"));
        QVERIFY(tabTo(QStringLiteral("clearPinnedList")));
        key(Qt::Key_Space);
        QVERIFY(tabTo(QStringLiteral("templateTaskNameField")));
        type(QStringLiteral(" again"));
        key(Qt::Key_Return);
        QTRY_VERIFY(!sheetIsShown());
        const QJsonObject stored = templatesInFile().at(0).toObject();
        QCOMPARE(stored.value(QStringLiteral("taskName")).toString(), QStringLiteral("Bug report task again"));
        QVERIFY(!stored.contains(QStringLiteral("listID")));
        QVERIFY(!stored.contains(QStringLiteral("listPath")));
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("templateRowList0"))), QStringLiteral("No pinned list"));
    }

    void templatesAreDeletedByKeyboardAndTheScreenshotsChoiceGoesWithTheirs() {
        storeTemplates({QStringLiteral("<b>Bug</b> & report"), QStringLiteral("Standup")});
        app().settings().modify([](AppSettings& settings) {
            settings.screenshotTemplateID = settings.templates[0].id;
            settings.screenRecordingTemplateID = settings.templates[1].id;
        });
        const QUuid recordingID = app().settings().settings().templates[1].id;
        showTemplatesByKeyboard();
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("templateRowName0"))),
                 QStringLiteral("<b>Bug</b> & report"));
        QVERIFY(tabTo(QStringLiteral("deleteTemplate0")));
        QCOMPARE(QuickItems::accessibleNames(item(QStringLiteral("deleteTemplate0"))).value(0),
                 QStringLiteral("Delete <b>Bug</b> & report"));
        key(Qt::Key_Space);
        QTRY_COMPARE(templatesInFile().size(), 1);
        QCOMPARE(templatesInFile()[0][QStringLiteral("name")].toString(), QStringLiteral("Standup"));
        QVERIFY(!settingsFile().contains(QStringLiteral("screenshotTemplateID")));
        QCOMPARE(focused(), QStringLiteral("newTemplate"));

        QVERIFY(tabTo(QStringLiteral("deleteTemplate0")));
        key(Qt::Key_Space);
        QTRY_VERIFY(templatesInFile().isEmpty());
        QCOMPARE(QUuid(settingsFile().value(QStringLiteral("screenRecordingTemplateID")).toString()), recordingID);
        QTRY_VERIFY(item(QStringLiteral("noTemplates"))->isVisible());
        QVERIFY(item(QStringLiteral("noTemplatesHint"))->isVisible());
    }

    void aLoginItemThatFailsShowsItsMessageInThePane() {
        QFile blocker(autostartFolder());
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        show(SettingsTab::general);
        QVERIFY(!item(QStringLiteral("loginItemError"))->isVisible());
        QVERIFY(tabTo(QStringLiteral("launchAtLogin")));
        key(Qt::Key_Space);
        QTRY_VERIFY(item(QStringLiteral("loginItemError"))->isVisible());
        QVERIFY2(QuickItems::plainText(item(QStringLiteral("loginItemErrorText"))).contains(autostartFolder()),
                 qPrintable(QuickItems::plainText(item(QStringLiteral("loginItemErrorText")))));
        QVERIFY(!item(QStringLiteral("launchAtLogin"))->property("checked").toBool());
    }

    void escapeClosesTheWindow() {
        show(SettingsTab::general);
        QVERIFY(tabTo(QStringLiteral("launchAtLogin")));
        key(Qt::Key_Escape);
        QTRY_VERIFY(!view().isVisible());
    }

    void theWindowFollowsTheDesktopIntoDarkAndBack() {
        ManualColorScheme scheme;
        ColorSchemePalette palette(scheme);
        show(SettingsTab::general);
        const auto windowColour = [this] {
            const QImage image = view().grabWindow();
            return image.pixelColor(4, image.height() - 4);
        };
        QVERIFY(windowColour().lightnessF() > 0.5);
        scheme.set(ColorSchemeSource::ColorScheme::dark);
        QTRY_VERIFY(windowColour().lightnessF() < 0.2);
        scheme.set(ColorSchemeSource::ColorScheme::light);
        QTRY_VERIFY(windowColour().lightnessF() > 0.5);
    }

    void aWindowFirstOpenedInDarkIsDark() {
        ManualColorScheme scheme;
        ColorSchemePalette palette(scheme);
        scheme.set(ColorSchemeSource::ColorScheme::dark);
        show(SettingsTab::fields);
        QTRY_VERIFY(view().grabWindow().pixelColor(4, view().height() - 4).lightnessF() < 0.2);
        scheme.set(ColorSchemeSource::ColorScheme::noPreference);
    }

    void aSecondOpenRaisesTheSameWindowOnTheTabAskedFor() {
        show(SettingsTab::general);
        QWindow other;
        other.resize(200, 200);
        other.show();
        other.requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(!view().isActive());

        m_window->showSettings();
        QVERIFY(QTest::qWaitForWindowActive(&view()));
        QCOMPARE(m_window->currentTab(), int(SettingsTab::general));
        // "Add Account…" opens it on the account tab.
        m_window->showTab(SettingsTab::account);
        QTRY_COMPARE(item(QStringLiteral("accountTab"))->property("checked").toBool(), true);
        int settingsWindows = 0;
        for (const QWindow* window : QGuiApplication::topLevelWindows()) {
            settingsWindows += window->isVisible() && window->title() == QStringLiteral("NorvaneBar Settings");
        }
        QCOMPARE(settingsWindows, 1);

        // Minimised, it comes back.
        view().setWindowStates(Qt::WindowMinimized);
        m_window->showSettings();
        QVERIFY(!(view().windowStates() & Qt::WindowMinimized));

        // Closed, it opens again as it was.
        view().close();
        QTRY_VERIFY(!view().isVisible());
        m_window->showSettings();
        QVERIFY(QTest::qWaitForWindowActive(&view()));
        QCOMPARE(m_window->currentTab(), int(SettingsTab::account));
    }

    void theAttachmentsTabShowsTheChosenProvidersSectionAndNote() {
        show(SettingsTab::attachments);
        const QStringList sections{QStringLiteral("cloudinarySection"), QStringLiteral("cloudflareR2Section"),
                                   QStringLiteral("googleDriveSection")};
        QVERIFY(tabTo(QStringLiteral("storageProvider")));
        QCOMPARE(item(QStringLiteral("storageProvider"))->property("currentText").toString(),
                 QStringLiteral("Norvane"));
        QCOMPARE(item(QStringLiteral("providerNote"))->property("text").toString(),
                 QStringLiteral("Attachments upload directly to Norvane when you create a task."));
        for (const QString& section : sections) {
            QVERIFY(!item(section)->isVisible());
        }
        const QStringList kinds{QStringLiteral("cloudinary"), QStringLiteral("cloudflareR2"),
                                QStringLiteral("googleDrive")};
        for (qsizetype shown = 0; shown < sections.size(); ++shown) {
            key(Qt::Key_Down);
            QTRY_COMPARE(settingsFile().value(QStringLiteral("storageProvider")).toString(), kinds[shown]);
            for (qsizetype section = 0; section < sections.size(); ++section) {
                QCOMPARE(item(sections[section])->isVisible(), section == shown);
            }
        }
        QCOMPARE(item(QStringLiteral("providerNote"))->property("text").toString(),
                 QStringLiteral("External providers upload files before task creation and insert viewable links "
                                "into the task description. Norvane stores files as native attachments."));
    }

    void theProvidersTextsAreSavedAsTheyAreTyped() {
        app().settings().set(&AppSettings::storageProvider, StorageProviderKind::cloudflareR2);
        show(SettingsTab::attachments);
        const QList<std::pair<QString, QString>> fields{
            {QStringLiteral("accountIDField"), QStringLiteral("cloudflareR2AccountID")},
            {QStringLiteral("bucketField"), QStringLiteral("cloudflareR2Bucket")},
            {QStringLiteral("publicURLBaseField"), QStringLiteral("cloudflareR2PublicURLBase")}};
        for (const auto& [field, settingsKey] : fields) {
            QVERIFY2(tabTo(field), qPrintable(field));
            type(QStringLiteral("<b>R&D</b> ") + field);
            QTRY_COMPARE(settingsFile().value(settingsKey).toString(), QStringLiteral("<b>R&D</b> ") + field);
        }
        // The key pair stays out of the settings file until the test stores it in the keyring.
        QVERIFY(tabTo(QStringLiteral("accessKeyIDField")));
        type(QStringLiteral("AKIDEXAMPLE"));
        QVERIFY(tabTo(QStringLiteral("secretAccessKeyField")));
        QCOMPARE(item(QStringLiteral("secretAccessKeyField"))->property("echoMode").toInt(), int(2));
        type(QStringLiteral("wJalrXUtnFEMI"));
        QVERIFY(!QJsonDocument(settingsFile()).toJson().contains("AKIDEXAMPLE"));
        QCOMPARE(m_window->storage().r2AccessKeyID(), QStringLiteral("AKIDEXAMPLE"));
        QCOMPARE(m_window->storage().r2SecretAccessKey(), QStringLiteral("wJalrXUtnFEMI"));
    }

    void testConnectionStoresTheKeyPairAndShowsItsResult() {
        show(SettingsTab::attachments);
        m_window->storage().setR2AccessKeyID(QStringLiteral("AKIDEXAMPLE"));
        m_window->storage().setR2SecretAccessKey(QStringLiteral("secret"));
        QVERIFY(tabTo(QStringLiteral("testConnection")));
        key(Qt::Key_Space);
        QTRY_VERIFY(item(QStringLiteral("testResult"))->isVisible());
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("testResultText"))),
                 QStringLiteral("Select an external storage provider first."));
        QCOMPARE(item(QStringLiteral("testResult"))->property("symbol").toString(),
                 QStringLiteral("xmark.circle.fill"));
        const QString service = KeychainStore::appService;
        QCOMPARE(m_fixture->memorySecrets().item(service, QStringLiteral("cloudflare-r2-access-key")),
                 std::optional(QByteArray("AKIDEXAMPLE")));
        QCOMPARE(m_fixture->memorySecrets().item(service, QStringLiteral("cloudflare-r2-secret-key")),
                 std::optional(QByteArray("secret")));
    }

    void theStoredKeyPairAndGoogleConnectionAreReadWhenTheTabAppears() {
        const QString service = KeychainStore::appService;
        m_fixture->memorySecrets().setItem(service, QStringLiteral("cloudflare-r2-access-key"), "stored-id");
        m_fixture->memorySecrets().setItem(service, QStringLiteral("cloudflare-r2-secret-key"), "stored-secret");
        m_fixture->memorySecrets().setItem(service, QStringLiteral("google-drive-refresh-token"), "refresh");
        app().settings().set(&AppSettings::storageProvider, StorageProviderKind::cloudflareR2);
        show(SettingsTab::general);
        key(Qt::Key_Tab, Qt::ControlModifier);
        QTRY_COMPARE(item(QStringLiteral("accessKeyIDField"))->property("text").toString(),
                     QStringLiteral("stored-id"));
        QCOMPARE(item(QStringLiteral("secretAccessKeyField"))->property("text").toString(),
                 QStringLiteral("stored-secret"));
        app().settings().set(&AppSettings::storageProvider, StorageProviderKind::googleDrive);
        QTRY_COMPARE(item(QStringLiteral("googleConnection"))->property("text").toString(),
                     QStringLiteral("Connected"));
        QCOMPARE(item(QStringLiteral("googleConnection"))->property("symbol").toString(),
                 QStringLiteral("checkmark.circle.fill"));
    }

    void signingInWithGoogleWaitsForTheBrowserAndCanBeCancelled() {
        app().settings().set(&AppSettings::storageProvider, StorageProviderKind::googleDrive);
        show(SettingsTab::attachments);
        QVERIFY(!item(QStringLiteral("googleSignInWaiting"))->isVisible());
        QVERIFY(tabTo(QStringLiteral("signInWithGoogle")));
        key(Qt::Key_Space);
        QTRY_VERIFY(item(QStringLiteral("googleSignInWaiting"))->isVisible());
        QCOMPARE(m_fixture->linkActions().opened().size(), 1);
        QCOMPARE(m_fixture->linkActions().opened().first().path(), QStringLiteral("/o/oauth2/v2/auth"));
        QVERIFY(!item(QStringLiteral("signInWithGoogle"))->isEnabled());
        QVERIFY(tabTo(QStringLiteral("cancelGoogleSignIn")));
        key(Qt::Key_Space);
        QTRY_VERIFY(!item(QStringLiteral("googleSignInWaiting"))->isVisible());
        QCOMPARE(QuickItems::plainText(item(QStringLiteral("testResultText"))),
                 QStringLiteral("Sign-in was cancelled."));
        QCOMPARE(item(QStringLiteral("testResult"))->property("symbol").toString(),
                 QStringLiteral("xmark.circle.fill"));
        QVERIFY(item(QStringLiteral("signInWithGoogle"))->isEnabled());
    }

    void disconnectingFromGoogleForgetsItsTokens() {
        const QString service = KeychainStore::appService;
        m_fixture->memorySecrets().setItem(service, QStringLiteral("google-drive-refresh-token"), "refresh");
        m_fixture->memorySecrets().setItem(service, QStringLiteral("google-drive-access-token"), "access");
        app().settings().set(&AppSettings::storageProvider, StorageProviderKind::googleDrive);
        show(SettingsTab::attachments);
        QTRY_VERIFY(item(QStringLiteral("disconnectGoogle"))->isEnabled());
        QVERIFY(tabTo(QStringLiteral("disconnectGoogle")));
        key(Qt::Key_Space);
        QTRY_COMPARE(item(QStringLiteral("googleConnection"))->property("text").toString(),
                     QStringLiteral("Not connected"));
        QCOMPARE(item(QStringLiteral("googleConnection"))->property("symbol").toString(), QStringLiteral("circle"));
        QVERIFY(!item(QStringLiteral("disconnectGoogle"))->isEnabled());
        QCOMPARE(m_fixture->memorySecrets().item(service, QStringLiteral("google-drive-refresh-token")), std::nullopt);
        QCOMPARE(m_fixture->memorySecrets().item(service, QStringLiteral("google-drive-access-token")), std::nullopt);
    }
};

NORVANEBAR_TEST_MAIN(SettingsWindowTest)
#include "SettingsWindowTest.moc"
