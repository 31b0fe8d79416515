#include "support/AppStateFixture.h"
#include "support/SandboxDemo.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

// Applying a template fills the draft and may move the composer to the list it pins; saving one
// keeps the draft's fields and the current list in the settings file. Against norvane-sandbox.
class AppStateTemplatesTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<AppStateFixture> m_fixture;

    AppState& app() { return m_fixture->app(); }
    TaskDraft& draft() { return app().draft(); }

    // A started app, signed in as the first demo user, whose tree of Northwind is loaded.
    AppState& startSignedIn() {
        QJsonObject settings{{"activeAccountID", SandboxDemo::firstUserID}};
        m_fixture->writeSettings(settings);
        return m_fixture->startSignedIn();
    }

    QString currentListID() { return app().currentContext() ? app().currentContext()->entry().list.id : QString(); }

    // Every field a template carries, pinned to `listID` when one is given.
    static TaskTemplate fullTemplate(std::optional<QString> listID = std::nullopt) {
        TaskTemplate filled;
        filled.name = QStringLiteral("Bug report");
        filled.listID = std::move(listID);
        filled.taskName = QStringLiteral("Crash on start");
        filled.descriptionMarkdown = QStringLiteral("## Steps\n1. Open");
        filled.status = QStringLiteral("in progress");
        filled.priority = 2;
        filled.tags = {QStringLiteral("bug"), QStringLiteral("ux")};
        filled.custom = {{QStringLiteral("f-text"), CustomValue::text(QStringLiteral("Seen on 2.4"))}};
        return filled;
    }

    void verifyEveryFieldOf(const TaskTemplate& applied) {
        QCOMPARE(draft().name(), applied.taskName);
        QCOMPARE(draft().descriptionText(), applied.descriptionMarkdown);
        QCOMPARE(draft().status(), applied.status);
        QCOMPARE(draft().priority(), std::optional<int>(2));
        QCOMPARE(draft().tags(), applied.tags);
        QCOMPARE(draft().custom(), applied.custom);
    }

    // Fields a template doesn't carry, set so that the reset before applying shows.
    void fillWhatTemplatesDoNotCarry() {
        draft().setAssignees({SandboxDemo::firstUserID});
        draft().setDueDate(QDateTime::currentDateTimeUtc().addDays(1));
        draft().setReminderLeadMinutes(60);
    }

    void verifyTheRestWasReset() {
        QVERIFY(draft().assignees().isEmpty());
        QCOMPARE(draft().dueDate(), std::nullopt);
        QCOMPARE(draft().reminderLeadMinutes(), app().settings().settings().defaultReminderLeadMinutes);
    }

    QJsonArray templatesInTheFile() {
        QFile file(m_fixture->settingsPath());
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        return QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("templates")).toArray();
    }

private slots:
    void initTestCase() { QVERIFY2(m_sandbox.start(), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = AppStateFixture::withFirstUser(m_sandbox);
        QVERIFY(m_fixture);
    }

    void cleanup() { m_fixture.reset(); }

    void aTemplateWithoutAListFillsEveryFieldAndTheListStays() {
        startSignedIn();
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::supportListID));
        fillWhatTemplatesDoNotCarry();
        const TaskTemplate applied = fullTemplate();
        runTask(app().applyTemplate(applied));
        verifyEveryFieldOf(applied);
        verifyTheRestWasReset();
        QCOMPARE(currentListID(), SandboxDemo::supportListID);
    }

    void aPinnedListEqualToTheCurrentListKeepsStatusTagsAndCustomValues() {
        startSignedIn();
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::inboxListID));
        ListContext* context = app().currentContext();
        const TaskTemplate applied = fullTemplate(SandboxDemo::inboxListID);
        runTask(app().applyTemplate(applied));
        verifyEveryFieldOf(applied);
        QCOMPARE(app().currentContext(), context);
    }

    void aPinnedListOtherThanTheCurrentListKeepsOnlyNameDescriptionAndPriority() {
        startSignedIn();
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::supportListID));
        const TaskTemplate applied = fullTemplate(SandboxDemo::inboxListID);
        runTask(app().applyTemplate(applied));
        QCOMPARE(currentListID(), SandboxDemo::inboxListID);
        QCOMPARE(draft().name(), applied.taskName);
        QCOMPARE(draft().descriptionText(), applied.descriptionMarkdown);
        QCOMPARE(draft().priority(), std::optional<int>(2));
        QCOMPARE(draft().status(), std::nullopt);
        QVERIFY(draft().tags().isEmpty());
        QVERIFY(draft().custom().isEmpty());
    }

    void aPinnedListOfAnUncachedWorkspaceIsFoundInTheWorkspaceOfTheLastLocation() {
        startSignedIn();
        QVERIFY(!app().hierarchy().entriesByWorkspace().contains(SandboxDemo::fabrikamID));
        app().settings().set(&AppSettings::lastLocation,
                             SavedLocation{SandboxDemo::fabrikamID, QStringLiteral("1"), QStringLiteral("Gone"),
                                           QStringLiteral("Research")});
        const TaskTemplate applied = fullTemplate(SandboxDemo::labNotesListID);
        runTask(app().applyTemplate(applied));
        QCOMPARE(currentListID(), SandboxDemo::labNotesListID);
        QCOMPARE(draft().name(), applied.taskName);
    }

    void aPinnedListOfAnUncachedWorkspaceIsNotFoundFromTheFirstWorkspace() {
        startSignedIn();
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::supportListID));
        app().settings().set(&AppSettings::lastLocation, std::optional<SavedLocation>());
        QCOMPARE(app().hierarchy().workspaces().constFirst().id, SandboxDemo::northwindID);
        const TaskTemplate applied = fullTemplate(SandboxDemo::labNotesListID);
        runTask(app().applyTemplate(applied));
        QVERIFY(!app().hierarchy().entriesByWorkspace().contains(SandboxDemo::fabrikamID));
        QCOMPARE(currentListID(), SandboxDemo::supportListID);
        // The composer stays filled on the current list.
        verifyEveryFieldOf(applied);
    }

    void aPinnedListOfAnotherWorkspaceIsFoundWhenThatWorkspaceComesFirst() {
        startSignedIn();
        app().settings().set(&AppSettings::lastLocation, std::optional<SavedLocation>());
        QList<Workspace> reordered = app().hierarchy().workspaces();
        std::reverse(reordered.begin(), reordered.end());
        QCOMPARE(reordered.constFirst().id, SandboxDemo::fabrikamID);
        app().hierarchy().setWorkspaces(reordered);
        runTask(app().applyTemplate(fullTemplate(SandboxDemo::labNotesListID)));
        QCOMPARE(currentListID(), SandboxDemo::labNotesListID);
    }

    void withNoWorkspaceToLoadAnUnknownPinnedListLeavesTheDraftFilled() {
        m_fixture->start();
        const TaskTemplate applied = fullTemplate(SandboxDemo::labNotesListID);
        runTask(app().applyTemplate(applied));
        QCOMPARE(app().currentContext(), nullptr);
        verifyEveryFieldOf(applied);
    }

    void bulkModeAndItsLinesAreNotTouched() {
        startSignedIn();
        app().submit().setBulkMode(true);
        app().submit().setBulkLines(QStringLiteral("one\ntwo"));
        runTask(app().applyTemplate(fullTemplate()));
        QVERIFY(app().submit().isBulkMode());
        QCOMPARE(app().submit().bulkLines(), QStringLiteral("one\ntwo"));
    }

    void anEmptyCustomValueFromTheFileStandsInTheDraftAndIsNotSent() {
        startSignedIn();
        TaskTemplate applied = fullTemplate();
        applied.custom = {{QStringLiteral("f-empty"), CustomValue::text(QStringLiteral("  "))}};
        runTask(app().applyTemplate(applied));
        QCOMPARE(draft().custom(), applied.custom);
        QCOMPARE(draft().buildRequest({}).customFields, std::nullopt);
    }

    void savingPinsTheCurrentListAndKeepsTheFieldsUntrimmed() {
        startSignedIn();
        runTask(app().hierarchy().loadEntries(SandboxDemo::northwindID, false));
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::releaseListID));
        draft().setName(QStringLiteral("  Release notes  "));
        draft().setDescriptionText(QStringLiteral("\nBody\n"));
        draft().setStatus(QStringLiteral("review"));
        draft().setPriority(1);
        draft().setTags({QStringLiteral("chore")});
        draft().setCustomValue(CustomValue::checkbox(true), QStringLiteral("f-check"));
        draft().setAssignees({SandboxDemo::firstUserID});
        app().saveCurrentAsTemplate(QStringLiteral(" Weekly "));
        const QList<TaskTemplate> templates = app().settings().settings().templates;
        QCOMPARE(templates.size(), 1);
        const TaskTemplate& saved = templates.constFirst();
        QCOMPARE(saved.name, QStringLiteral(" Weekly "));
        QCOMPARE(saved.listID, std::optional(SandboxDemo::releaseListID));
        QCOMPARE(saved.listPath, std::optional(QStringLiteral("Product › Releases › 2.4 release")));
        QCOMPARE(saved.taskName, QStringLiteral("  Release notes  "));
        QCOMPARE(saved.descriptionMarkdown, QStringLiteral("\nBody\n"));
        QCOMPARE(saved.status, std::optional(QStringLiteral("review")));
        QCOMPARE(saved.priority, std::optional<qint64>(1));
        QCOMPARE(saved.tags, QSet<QString>{QStringLiteral("chore")});
        QCOMPARE(saved.custom, (QMap<QString, CustomValue>{{QStringLiteral("f-check"), CustomValue::checkbox(true)}}));
        const QJsonArray written = templatesInTheFile();
        QCOMPARE(written.size(), 1);
        QCOMPARE(written[0][QStringLiteral("id")].toString(), saved.id.toString(QUuid::WithoutBraces));
    }

    void savingAListOutsideAFolderGivesThePathOfSpaceAndList() {
        startSignedIn();
        QVERIFY(m_fixture->chooseNorthwindList(SandboxDemo::supportListID));
        app().saveCurrentAsTemplate(QStringLiteral("Support"));
        QCOMPARE(app().settings().settings().templates.constFirst().listPath,
                 std::optional(QStringLiteral("Operations › Support queue")));
    }

    void savingWithoutAListPinsNoneAndDuplicateNamesAreKept() {
        m_fixture->start();
        app().saveCurrentAsTemplate(QStringLiteral("Same"));
        app().saveCurrentAsTemplate(QStringLiteral("Same"));
        const QList<TaskTemplate> templates = app().settings().settings().templates;
        QCOMPARE(templates.size(), 2);
        QCOMPARE(templates[0].listID, std::nullopt);
        QCOMPARE(templates[0].listPath, std::nullopt);
        QVERIFY(templates[0].id != templates[1].id);
        QCOMPARE(templatesInTheFile().size(), 2);
    }

    void aTemplateWithNoKeysInTheFileGetsANewIdAtEachReadUntilTheSettingsAreWritten() {
        m_fixture->writeSettings({{"templates", QJsonArray{QJsonObject()}}});
        const QUuid first = SettingsStore(m_fixture->settingsPath()).settings().templates.constFirst().id;
        SettingsStore store(m_fixture->settingsPath());
        const TaskTemplate second = store.settings().templates.constFirst();
        QCOMPARE(second.name, QStringLiteral("Template"));
        QVERIFY(first != second.id);
        store.save();
        QCOMPARE(SettingsStore(m_fixture->settingsPath()).settings().templates.constFirst().id, second.id);
        QCOMPARE(SettingsStore(m_fixture->settingsPath()).settings().templates.constFirst().id, second.id);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(AppStateTemplatesTest)
#include "AppStateTemplatesTest.moc"
