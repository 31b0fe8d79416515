#include "core/settings/FieldVisibility.h"
#include "support/SettingsFileTesting.h"
#include "support/TestMain.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

// Which field chips the composer shows, as the "Fields" tab changes it, read back from the file.
class FieldVisibilityTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path() const { return m_folder.filePath(QStringLiteral("settings.json")); }
    QStringList storedSet(const QString& key) const { return SettingsFileTesting::storedSet(path(), key); }

private slots:
    void cleanup() { QFile::remove(path()); }

    void theBuiltInFieldsAreListedInTheSettingsOrderWithTheirLabels() {
        QStringList labels;
        for (const DefaultField field : FieldVisibility::defaultFieldsInOrder()) {
            labels.append(FieldVisibility::label(field));
        }
        QCOMPARE(labels, (QStringList{QStringLiteral("Status"), QStringLiteral("Assignee"), QStringLiteral("Priority"),
                                      QStringLiteral("Due date"), QStringLiteral("Tags")}));
    }

    void turningABuiltInFieldOnInsertsItAndOffRemovesIt() {
        SettingsStore store(path());
        QVERIFY(!FieldVisibility::isVisible(store.settings(), DefaultField::priority));
        FieldVisibility::setVisible(store, DefaultField::priority, true);
        QVERIFY(FieldVisibility::isVisible(store.settings(), DefaultField::priority));
        QCOMPARE(storedSet(QStringLiteral("visibleDefaultFields")),
                 (QStringList{QStringLiteral("assignee"), QStringLiteral("dueDate"), QStringLiteral("priority"),
                              QStringLiteral("status")}));

        FieldVisibility::setVisible(store, DefaultField::status, false);
        QVERIFY(!FieldVisibility::isVisible(store.settings(), DefaultField::status));
        QCOMPARE(storedSet(QStringLiteral("visibleDefaultFields")),
                 (QStringList{QStringLiteral("assignee"), QStringLiteral("dueDate"), QStringLiteral("priority")}));
    }

    void aCustomFieldTurnedOffIsStoredAsHidden() {
        SettingsStore store(path());
        QVERIFY(FieldVisibility::isCustomFieldVisible(store.settings(), QStringLiteral("cf-1")));
        FieldVisibility::setCustomFieldVisible(store, QStringLiteral("cf-1"), false);
        FieldVisibility::setCustomFieldVisible(store, QStringLiteral("cf-2"), false);
        QVERIFY(!FieldVisibility::isCustomFieldVisible(store.settings(), QStringLiteral("cf-1")));
        QCOMPARE(storedSet(QStringLiteral("hiddenCustomFieldIDs")),
                 (QStringList{QStringLiteral("cf-1"), QStringLiteral("cf-2")}));

        FieldVisibility::setCustomFieldVisible(store, QStringLiteral("cf-1"), true);
        QVERIFY(FieldVisibility::isCustomFieldVisible(store.settings(), QStringLiteral("cf-1")));
        QCOMPARE(storedSet(QStringLiteral("hiddenCustomFieldIDs")), QStringList{QStringLiteral("cf-2")});
    }

    void turningOnAFieldThatShowsAlreadyStillSaves() {
        SettingsStore store(path());
        FieldVisibility::setCustomFieldVisible(store, QStringLiteral("cf-1"), true);
        QVERIFY(QFile::exists(path()));
        QCOMPARE(storedSet(QStringLiteral("hiddenCustomFieldIDs")), QStringList());
        FieldVisibility::setVisible(store, DefaultField::status, true);
        QCOMPARE(storedSet(QStringLiteral("visibleDefaultFields")),
                 (QStringList{QStringLiteral("assignee"), QStringLiteral("dueDate"), QStringLiteral("status")}));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(FieldVisibilityTest)
#include "FieldVisibilityTest.moc"
