#include "core/compose/TemplateList.h"
#include "support/SettingsFileTesting.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

// The templates as the settings window edits and deletes them, read back from the settings file.
class TemplateListTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path() const { return m_folder.filePath(QStringLiteral("settings.json")); }
    QJsonObject file() const { return SettingsFileTesting::stored(path()); }
    QJsonArray templatesInFile() const { return file().value(QStringLiteral("templates")).toArray(); }

    static TaskTemplate named(const QString& name) {
        TaskTemplate made;
        made.name = name;
        made.taskName = name + QStringLiteral(" task");
        return made;
    }

    static ListEntry entry(std::optional<QString> folderName) {
        ListEntry made;
        made.workspaceID = QStringLiteral("w1");
        made.spaceID = QStringLiteral("s1");
        made.spaceName = QStringLiteral("Product");
        if (folderName) {
            made.folderID = QStringLiteral("f1");
            made.folderName = folderName;
        }
        made.list.id = QStringLiteral("l1");
        made.list.name = QStringLiteral("Release");
        return made;
    }

    // A store holding the templates "A", "B" and "C", the screenshot's choice on `screenshot` and the
    // recording's on `recording`, written to the file.
    std::unique_ptr<SettingsStore> storeWith(int screenshot, int recording) {
        auto store = std::make_unique<SettingsStore>(path());
        store->modify([&](AppSettings& changed) {
            changed.templates = {named(QStringLiteral("A")), named(QStringLiteral("B")), named(QStringLiteral("C"))};
            changed.screenshotTemplateID = changed.templates[screenshot].id;
            changed.screenRecordingTemplateID = changed.templates[recording].id;
        });
        return store;
    }

    QStringList namesInFile() const {
        QStringList names;
        for (const QJsonValue stored : templatesInFile()) {
            names.append(stored[QStringLiteral("name")].toString());
        }
        return names;
    }

private slots:
    void cleanup() { QFile::remove(path()); }

    void deletingTheTemplateChosenForScreenshotsClearsThatChoiceDeletingTheOneChosenForRecordingsLeavesAStaleId() {
        std::unique_ptr<SettingsStore> store = storeWith(0, 1);
        const QUuid screenshotID = store->settings().templates[0].id;
        const QUuid recordingID = store->settings().templates[1].id;
        QCOMPARE(QUuid(file().value(QStringLiteral("screenshotTemplateID")).toString()), screenshotID);

        TemplateList::remove(*store, screenshotID);
        QCOMPARE(namesInFile(), (QStringList{QStringLiteral("B"), QStringLiteral("C")}));
        QVERIFY(!file().contains(QStringLiteral("screenshotTemplateID")));
        QCOMPARE(store->settings().screenshotTemplateID, std::nullopt);

        TemplateList::remove(*store, recordingID);
        QCOMPARE(namesInFile(), QStringList{QStringLiteral("C")});
        QCOMPARE(QUuid(file().value(QStringLiteral("screenRecordingTemplateID")).toString()), recordingID);
        QCOMPARE(store->settings().screenRecordingTemplateID, recordingID);
    }

    void deletingATemplateChosenForNeitherLeavesBothChoices() {
        std::unique_ptr<SettingsStore> store = storeWith(0, 0);
        const QUuid chosen = store->settings().templates[0].id;
        QSignalSpy changed(store.get(), &SettingsStore::settingsChanged);
        TemplateList::remove(*store, store->settings().templates[2].id);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(namesInFile(), (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
        QCOMPARE(QUuid(file().value(QStringLiteral("screenshotTemplateID")).toString()), chosen);
        QCOMPARE(QUuid(file().value(QStringLiteral("screenRecordingTemplateID")).toString()), chosen);
    }

    void deletingTheScreenshotsTemplateSavesTwice() {
        std::unique_ptr<SettingsStore> store = storeWith(1, 0);
        QSignalSpy changed(store.get(), &SettingsStore::settingsChanged);
        TemplateList::remove(*store, store->settings().templates[1].id);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(store->settings().screenshotTemplateID, std::nullopt);
    }

    void deletingRemovesEveryTemplateOfThatId() {
        std::unique_ptr<SettingsStore> store = storeWith(2, 2);
        store->modify([](AppSettings& changed) {
            TaskTemplate twin = changed.templates[0];
            twin.name = QStringLiteral("A again");
            changed.templates.append(twin);
        });
        QCOMPARE(templatesInFile().size(), 4);
        TemplateList::remove(*store, store->settings().templates[0].id);
        QCOMPARE(namesInFile(), (QStringList{QStringLiteral("B"), QStringLiteral("C")}));
    }

    void deletingAnUnknownIdOnlySaves() {
        std::unique_ptr<SettingsStore> store = storeWith(0, 1);
        const AppSettings before = store->settings();
        QFile::remove(path());
        TemplateList::remove(*store, QUuid::createUuid());
        QCOMPARE(store->settings(), before);
        QCOMPARE(namesInFile(), (QStringList{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")}));
    }

    void editingReplacesTheTemplateOfTheSameIdInPlaceAndSaves() {
        std::unique_ptr<SettingsStore> store = storeWith(0, 1);
        TaskTemplate edited = store->settings().templates[1];
        edited.name = QStringLiteral("Bug <b>&amp;</b>");
        edited.taskName = QStringLiteral("Crash: ");
        edited.descriptionMarkdown = QStringLiteral("Steps\n1. ");
        TemplateList::pin(edited, entry(QStringLiteral("Sprint 12")));
        TemplateList::replace(*store, edited);

        QCOMPARE(store->settings().templates.size(), 3);
        QCOMPARE(store->settings().templates[1], edited);
        QCOMPARE(namesInFile(),
                 (QStringList{QStringLiteral("A"), QStringLiteral("Bug <b>&amp;</b>"), QStringLiteral("C")}));
        const QJsonValue stored = templatesInFile().at(1);
        QCOMPARE(QUuid(stored[QStringLiteral("id")].toString()), edited.id);
        QCOMPARE(stored[QStringLiteral("taskName")].toString(), QStringLiteral("Crash: "));
        QCOMPARE(stored[QStringLiteral("descriptionMarkdown")].toString(), QStringLiteral("Steps\n1. "));
        QCOMPARE(stored[QStringLiteral("listID")].toString(), QStringLiteral("l1"));
        QCOMPARE(stored[QStringLiteral("listPath")].toString(), QStringLiteral("Product › Sprint 12 › Release"));
    }

    void anEditedTemplateWithoutItsListLosesBothKeysInTheFile() {
        std::unique_ptr<SettingsStore> store = storeWith(0, 1);
        TaskTemplate edited = store->settings().templates[0];
        TemplateList::pin(edited, entry(std::nullopt));
        TemplateList::replace(*store, edited);
        QCOMPARE(templatesInFile().at(0)[QStringLiteral("listPath")].toString(), QStringLiteral("Product › Release"));

        edited.listID.reset();
        edited.listPath.reset();
        TemplateList::replace(*store, edited);
        QVERIFY(!templatesInFile().at(0).toObject().contains(QStringLiteral("listID")));
        QVERIFY(!templatesInFile().at(0).toObject().contains(QStringLiteral("listPath")));
    }

    void aTemplateNotStoredYetIsAppendedWhenSaved() {
        std::unique_ptr<SettingsStore> store = storeWith(0, 1);
        const TaskTemplate created = named(QStringLiteral("New"));
        TemplateList::replace(*store, created);
        QCOMPARE(store->settings().templates.size(), 4);
        QCOMPARE(store->settings().templates.last(), created);
        QCOMPARE(namesInFile().last(), QStringLiteral("New"));
    }

    void theListPathJoinsSpaceFolderAndList() {
        QCOMPARE(TemplateList::listPath(entry(QStringLiteral("Sprint 12"))),
                 QStringLiteral("Product › Sprint 12 › Release"));
        QCOMPARE(TemplateList::listPath(entry(std::nullopt)), QStringLiteral("Product › Release"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(TemplateListTest)
#include "TemplateListTest.moc"
