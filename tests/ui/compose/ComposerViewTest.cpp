#include "core/compose/AttachmentStaging.h"
#include "support/KeyboardDriver.h"
#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QQuickItem>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

// The composer page by keyboard alone, against norvane-sandbox: when the submit button is on, the
// description that grows, the template menu and its sheet, and a thumbnail's menu that saves the file
// to disk or removes it.
class ComposerViewTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;
    QTemporaryDir m_files;

    AppState& app() { return *m_fixture->app; }
    PopoverWindow& popover() { return m_fixture->popover; }

    QQuickItem* item(const QString& objectName) { return QuickItems::visualChild(popover().rootObject(), objectName); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        KeyboardDriver(popover()).press(key, modifiers);
    }

    // Types `text` key by key into the focused item, as a keyboard would.
    void type(const QString& text) { KeyboardDriver(popover()).type(text); }

    // Moves the keyboard focus with Tab until the item of that name has it.
    bool tabTo(const QString& objectName) {
        for (int step = 0; step < 20; ++step) {
            QQuickItem* wanted = item(objectName);
            if (wanted && wanted->hasActiveFocus()) {
                return true;
            }
            press(Qt::Key_Tab);
        }
        return false;
    }

    // The popup of that name while it is open, on the page or in the first thumbnail.
    QObject* openPopup(const QString& objectName) {
        QObject* popup = m_fixture->find(objectName);
        if (QQuickItem* thumbnail = item(QStringLiteral("attachmentThumbnail")); !popup && thumbnail) {
            popup = thumbnail->findChild<QObject*>(objectName);
        }
        return popup && popup->property("opened").toBool() ? popup : nullptr;
    }

    // Tabs to the template button and opens its menu with Space: true once the menu has the keyboard.
    bool openTemplateMenu() {
        if (!tabTo(QStringLiteral("templateMenuButton"))) {
            return false;
        }
        press(Qt::Key_Space);
        return KeyboardDriver::waitForMenu(m_fixture->find(QStringLiteral("templateMenu")));
    }

    QJsonArray templatesInTheFile() {
        QFile file(m_fixture->state.settingsPath());
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        return QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("templates")).toArray();
    }

    // A file of its own, attached to the draft.
    QString attach(const QString& name, const QByteArray& contents) {
        const QString path = m_files.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()) {
            return {};
        }
        file.close();
        const std::optional<StagedAttachment> staged = AttachmentStaging::stage(QUrl::fromLocalFile(path));
        if (staged) {
            app().draft().appendAttachments({*staged});
        }
        return path;
    }

    // Puts the keyboard on the first thumbnail and opens its menu with `key`: true once the menu has
    // the keyboard.
    bool openThumbnailMenu(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        if (!QTest::qWaitFor([this] { return item(QStringLiteral("attachmentThumbnail")) != nullptr; }) ||
            !tabTo(QStringLiteral("attachmentStrip"))) {
            return false;
        }
        QQuickItem* thumbnail = item(QStringLiteral("attachmentThumbnail"));
        if (!thumbnail || !thumbnail->hasActiveFocus()) {
            return false;
        }
        press(key, modifiers);
        return KeyboardDriver::waitForMenu(thumbnail->findChild<QObject*>(QStringLiteral("attachmentMenu")));
    }

    // Chooses the entry of that objectName or label in the open popup menu of that name, by
    // keyboard: false when there is no such entry or the menu doesn't take it.
    bool chooseEntry(const QString& menuName, const QString& entryName) {
        QObject* menu = openPopup(menuName);
        const int count = menu ? menu->property("count").toInt() : 0;
        for (int index = 0; index < count; ++index) {
            QQuickItem* entry = nullptr;
            QMetaObject::invokeMethod(menu, "itemAt", Q_RETURN_ARG(QQuickItem*, entry), Q_ARG(int, index));
            if (entry && (entry->objectName() == entryName || entry->property("label").toString() == entryName)) {
                return KeyboardDriver(popover()).chooseInMenu(menu, index);
            }
        }
        return false;
    }

    bool chooseSaveToDisk() { return chooseEntry(QStringLiteral("attachmentMenu"), QStringLiteral("saveAttachment")); }

    struct Chosen {
        QUrl folder;
        QUrl proposedFile;
    };

    // Answers the exporter's question with `destination` instead of a dialog, noting the question.
    void chooseDestination(const QString& destination, Chosen& chosen) {
        m_fixture->exporter->setDestinationChooser([destination, &chosen](const QUrl& folder, const QUrl& proposed) {
            chosen = {folder, proposed};
            return std::optional(QUrl::fromLocalFile(destination));
        });
    }

    static QByteArray contentsOf(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // The symbols the thumbnails show in place of a picture, sorted.
    QStringList symbolsShown() {
        QStringList symbols;
        auto* content = item(QStringLiteral("attachmentStrip"))->property("contentItem").value<QQuickItem*>();
        for (QQuickItem* thumbnail : content->childItems()) {
            QQuickItem* symbol = QuickItems::visualChild(thumbnail, QStringLiteral("attachmentSymbol"));
            if (symbol && symbol->isVisible()) {
                symbols << symbol->property("source").toUrl().toString();
            }
        }
        symbols.sort();
        return symbols;
    }

    static QString downloads() { return QStandardPaths::writableLocation(QStandardPaths::DownloadLocation); }

private slots:
    void initTestCase() {
        QVERIFY(m_files.isValid());
        QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString()));
    }

    void init() {
        m_fixture = PopoverFixture::signedInAgainst(m_sandbox, SandboxDemo::supportListID);
        QVERIFY(m_fixture);
        QVERIFY(QTest::qWaitForWindowActive(&popover()));
        QTRY_VERIFY(item(QStringLiteral("taskName")) && item(QStringLiteral("taskName"))->hasActiveFocus());
        QVERIFY(m_sandbox.clearRequests());
    }

    void cleanup() { m_fixture.reset(); }

    void aNameOfBlanksLeavesTheSubmitButtonOff() {
        type(QStringLiteral("    "));
        QCOMPARE(app().draft().name(), QStringLiteral("    "));
        QVERIFY(!item(QStringLiteral("submitButton"))->isEnabled());
        type(QStringLiteral("x"));
        QTRY_VERIFY(item(QStringLiteral("submitButton"))->isEnabled());
    }

    void inBulkModeBlankLinesLeaveTheSubmitButtonOffAndOneRealLineTurnsItOn() {
        m_fixture->composer->setBulkMode(true);
        QTRY_VERIFY(item(QStringLiteral("bulkEditor"))->isVisible());
        QVERIFY(tabTo(QStringLiteral("bulkEditor")));
        type(QStringLiteral("  \n\t\n \n"));
        QCOMPARE(m_fixture->composer->bulkLines(), QStringLiteral("  \n\t\n \n"));
        QVERIFY(!item(QStringLiteral("submitButton"))->isEnabled());
        type(QStringLiteral("Order chairs"));
        QTRY_VERIFY(item(QStringLiteral("submitButton"))->isEnabled());
        QCOMPARE(item(QStringLiteral("submitButton"))->property("text").toString(), QStringLiteral("Create Tasks"));
    }

    void theSubmitShortcutDoesNothingWhileSubmittingIsOff() {
        m_fixture->composer->setBulkMode(true);
        QVERIFY(tabTo(QStringLiteral("bulkEditor")));
        type(QStringLiteral(" \n \n"));
        press(Qt::Key_Return, Qt::ControlModifier);
        QTest::qWait(200);
        QCOMPARE(m_fixture->submit->page(), SubmitViewModel::Composer);
        QCOMPARE(app().submit().bulkLines(), QStringLiteral(" \n \n"));
        for (const QJsonValue& request : m_sandbox.requests()) {
            QVERIFY2(request[QStringLiteral("method")] != QStringLiteral("POST"),
                     qPrintable(request[QStringLiteral("path")].toString()));
        }
    }

    void theDescriptionGrowsWithItsTextUpToAFewLinesThenScrolls() {
        QVERIFY(tabTo(QStringLiteral("taskDescription")));
        QQuickItem* area = item(QStringLiteral("taskDescription"));
        QQuickItem* editor = area->parentItem();
        while (editor && !editor->inherits("QQuickScrollView")) {
            editor = editor->parentItem();
        }
        QVERIFY(editor);
        const qreal oneLine = editor->height();
        type(QStringLiteral("first\nsecond\nthird"));
        QTRY_VERIFY(editor->height() > oneLine);
        const qreal threeLines = editor->height();
        type(QStringLiteral("\n4\n5\n6\n7\n8\n9\n10"));
        // The layout gives whole pixels, the cap may fall between two.
        const qreal capped = editor->property("maximumHeight").toReal();
        const auto atTheCap = [&] { return qAbs(editor->height() - capped) < 1; };
        QVERIFY(capped > threeLines);
        QTRY_VERIFY(atTheCap());
        QVERIFY2(area->height() > capped, qPrintable(QStringLiteral("%1 <= %2").arg(area->height()).arg(capped)));
        const qreal tenLines = area->height();
        type(QStringLiteral("\n11\n12"));
        QTRY_VERIFY(area->height() > tenLines);
        QVERIFY(atTheCap());
        QCOMPARE(app().draft().descriptionText(), QStringLiteral("first\nsecond\nthird\n4\n5\n6\n7\n8\n9\n10\n11\n12"));
    }

    void aTemplateChosenFromTheMenuFillsTheDraft() {
        TaskTemplate other;
        other.name = QStringLiteral("Other");
        TaskTemplate bug;
        bug.name = QStringLiteral("<b>Bug</b> & report");
        bug.taskName = QStringLiteral("Crash on start");
        bug.descriptionMarkdown = QStringLiteral("Steps to reproduce");
        bug.priority = 2;
        app().settings().modify([&](AppSettings& settings) { settings.templates = {other, bug}; });
        type(QStringLiteral("typed before"));
        QVERIFY(openTemplateMenu());
        QVERIFY(chooseEntry(QStringLiteral("templateMenu"), bug.name));
        QTRY_COMPARE(app().draft().name(), QStringLiteral("Crash on start"));
        QCOMPARE(app().draft().descriptionText(), QStringLiteral("Steps to reproduce"));
        QCOMPARE(app().draft().priority(), std::optional<int>(2));
        QTRY_COMPARE(item(QStringLiteral("taskName"))->property("text").toString(), QStringLiteral("Crash on start"));
        QCOMPARE(item(QStringLiteral("taskDescription"))->property("text").toString(),
                 QStringLiteral("Steps to reproduce"));
        QTRY_VERIFY(!openPopup(QStringLiteral("templateMenu")));
        QCOMPARE(app().currentContext()->entry().list.id, SandboxDemo::supportListID);
    }

    void theTemplateMenuShowsStoredNamesAsPlainText() {
        TaskTemplate markup;
        markup.name = QStringLiteral("<b>Bug</b> & report");
        app().settings().modify([&](AppSettings& settings) { settings.templates = {markup}; });
        QVERIFY(openTemplateMenu());
        QQuickItem* entry = nullptr;
        QTRY_VERIFY((entry = QuickItems::visualChild(popover().contentItem(), QStringLiteral("templateEntry"))));
        QVERIFY(QuickItems::accessibleNames(entry).contains(markup.name));
        press(Qt::Key_Escape);
        QTRY_VERIFY(!openPopup(QStringLiteral("templateMenu")));
    }

    void theDraftIsSavedAsATemplateThroughTheSheetAndReadBackFromTheSettingsFile() {
        type(QStringLiteral("Weekly report"));
        QVERIFY(openTemplateMenu());
        QVERIFY(chooseEntry(QStringLiteral("templateMenu"), QStringLiteral("saveCurrentAsTemplate")));
        QObject* sheet = nullptr;
        QTRY_VERIFY((sheet = openPopup(QStringLiteral("saveTemplateSheet"))));
        QCOMPARE(sheet->property("title").toString(), QStringLiteral("Save as Template"));
        QQuickItem* field = nullptr;
        QTRY_VERIFY((field = QuickItems::visualChild(popover().contentItem(), QStringLiteral("templateName"))) &&
                    field->hasActiveFocus());
        QCOMPARE(field->property("placeholderText").toString(), QStringLiteral("Template name"));
        QQuickItem* save = QuickItems::visualChild(popover().contentItem(), QStringLiteral("saveTemplate"));
        QVERIFY(save && !save->isEnabled());
        type(QStringLiteral("Weekly"));
        QTRY_VERIFY(save->isEnabled());
        press(Qt::Key_Return);
        QTRY_VERIFY(!openPopup(QStringLiteral("saveTemplateSheet")));
        const QJsonArray written = templatesInTheFile();
        QCOMPARE(written.size(), 1);
        QCOMPARE(written[0][QStringLiteral("name")].toString(), QStringLiteral("Weekly"));
        QCOMPARE(written[0][QStringLiteral("taskName")].toString(), QStringLiteral("Weekly report"));
        QCOMPARE(written[0][QStringLiteral("listID")].toString(), SandboxDemo::supportListID);
        QCOMPARE(written[0][QStringLiteral("listPath")].toString(), QStringLiteral("Operations › Support queue"));
        QTRY_COMPARE(m_fixture->templates->names(), QStringList{QStringLiteral("Weekly")});
    }

    void cancellingTheSheetSavesNoTemplate() {
        QVERIFY(openTemplateMenu());
        QVERIFY(chooseEntry(QStringLiteral("templateMenu"), QStringLiteral("saveCurrentAsTemplate")));
        QQuickItem* field = nullptr;
        QTRY_VERIFY((field = QuickItems::visualChild(popover().contentItem(), QStringLiteral("templateName"))) &&
                    field->hasActiveFocus());
        type(QStringLiteral("Not kept"));
        press(Qt::Key_Escape);
        QTRY_VERIFY(!openPopup(QStringLiteral("saveTemplateSheet")));
        QVERIFY(app().settings().settings().templates.isEmpty());
    }

    void theStripShowsOnlyWithAttachmentsWithTheirCount() {
        QQuickItem* count = item(QStringLiteral("attachmentCount"));
        QVERIFY(count && !count->isVisible());
        attach(QStringLiteral("notes.txt"), "n");
        attach(QStringLiteral("clip.mov"), "m");
        QTRY_VERIFY(count->isVisible());
        QCOMPARE(count->property("text").toString(), QStringLiteral("2 attachments"));
        QTRY_COMPARE(symbolsShown(), (QStringList{QStringLiteral("image://symbol/doc.fill"),
                                                  QStringLiteral("image://symbol/film.fill")}));
    }

    void aThumbnailsMenuKeySavesTheFileToDiskWhereTheDialogSays() {
        const QString source = attach(QStringLiteral("report.pdf"), "%PDF-1.7 report");
        const QString destination = m_files.filePath(QStringLiteral("saved-report.pdf"));
        Chosen chosen;
        chooseDestination(destination, chosen);
        QVERIFY(openThumbnailMenu(Qt::Key_Menu));
        QVERIFY(chooseSaveToDisk());
        QTRY_COMPARE(contentsOf(destination), QByteArray("%PDF-1.7 report"));
        QCOMPARE(contentsOf(source), QByteArray("%PDF-1.7 report"));
        // The dialog starts in Downloads with the file's name proposed.
        QCOMPARE(chosen.folder, QUrl::fromLocalFile(downloads()));
        QCOMPARE(chosen.proposedFile, QUrl::fromLocalFile(QDir(downloads()).filePath(QStringLiteral("report.pdf"))));
        QCOMPARE(app().draft().attachments().size(), 1);
    }

    void savingToDiskReplacesAnExistingFile() {
        attach(QStringLiteral("new.txt"), "new");
        const QString destination = m_files.filePath(QStringLiteral("existing.txt"));
        QFile existing(destination);
        QVERIFY(existing.open(QIODevice::WriteOnly) && existing.write("old and longer") > 0);
        existing.close();
        Chosen chosen;
        chooseDestination(destination, chosen);
        QVERIFY(openThumbnailMenu(Qt::Key_F10, Qt::ShiftModifier));
        QVERIFY(chooseSaveToDisk());
        QTRY_COMPARE(contentsOf(destination), QByteArray("new"));
        QVERIFY(!openPopup(QStringLiteral("saveFailedDialog")));
    }

    void aFailedSaveShowsCouldntSaveFileWithTheErrorsText() {
        attach(QStringLiteral("lost.txt"), "lost");
        Chosen chosen;
        chooseDestination(m_files.filePath(QStringLiteral("no/such/folder/lost.txt")), chosen);
        QVERIFY(openThumbnailMenu(Qt::Key_Menu));
        QVERIFY(chooseSaveToDisk());
        QObject* dialog = nullptr;
        QTRY_VERIFY((dialog = openPopup(QStringLiteral("saveFailedDialog"))));
        QCOMPARE(dialog->property("title").toString(), QStringLiteral("Couldn't save file"));
        const QString failure = m_fixture->exporter->failure();
        QVERIFY(!failure.isEmpty());
        QCOMPARE(
            QuickItems::plainText(QuickItems::visualChild(popover().contentItem(), QStringLiteral("saveFailedText"))),
            failure);
        press(Qt::Key_Escape);
        QTRY_VERIFY(!openPopup(QStringLiteral("saveFailedDialog")));
        QCOMPARE(m_fixture->exporter->failure(), QString());
    }

    void removeInAThumbnailsMenuTakesTheAttachmentOutAndKeepsItsFile() {
        const QString kept = attach(QStringLiteral("keep.txt"), "keep");
        QVERIFY(openThumbnailMenu(Qt::Key_Menu));
        QVERIFY(chooseEntry(QStringLiteral("attachmentMenu"), QStringLiteral("removeAttachmentItem")));
        QTRY_COMPARE(app().draft().attachments().size(), 0);
        QVERIFY(QFile::exists(kept));
        QTRY_VERIFY(!item(QStringLiteral("attachmentCount"))->isVisible());
    }

    void theSaveDialogOpensInDownloadsWithTheFilesNameProposed() {
        QVERIFY(QDir().mkpath(downloads()));
        attach(QStringLiteral("photo.txt"), "p");
        QVERIFY(openThumbnailMenu(Qt::Key_Menu));
        QVERIFY(chooseSaveToDisk());
        QObject* dialog = m_fixture->find(QStringLiteral("saveAttachmentDialog"));
        QVERIFY(dialog);
        QTRY_VERIFY(dialog->property("visible").toBool());
        QCOMPARE(dialog->property("fileMode").toInt(), 2); // FileDialog.SaveFile
        QCOMPARE(dialog->property("currentFolder").toUrl(), QUrl::fromLocalFile(downloads()));
        QCOMPARE(dialog->property("selectedFile").toUrl(),
                 QUrl::fromLocalFile(QDir(downloads()).filePath(QStringLiteral("photo.txt"))));
        QMetaObject::invokeMethod(dialog, "reject");
        QTRY_VERIFY(!dialog->property("visible").toBool());
        QVERIFY(!QFile::exists(QDir(downloads()).filePath(QStringLiteral("photo.txt"))));
    }

    void aSecondSaveOpensTheDialogAgain() {
        QVERIFY(QDir().mkpath(downloads()));
        attach(QStringLiteral("twice.txt"), "t");
        for (int save = 0; save < 2; ++save) {
            QVERIFY(openThumbnailMenu(Qt::Key_Menu));
            QVERIFY(chooseSaveToDisk());
            QObject* dialog = m_fixture->find(QStringLiteral("saveAttachmentDialog"));
            QVERIFY(dialog);
            QTRY_VERIFY(dialog->property("visible").toBool());
            QCOMPARE(dialog->property("selectedFile").toUrl(),
                     QUrl::fromLocalFile(QDir(downloads()).filePath(QStringLiteral("twice.txt"))));
            QMetaObject::invokeMethod(dialog, "reject");
            QTRY_VERIFY(!dialog->property("visible").toBool());
        }
    }
};

NORVANEBAR_TEST_MAIN(ComposerViewTest)
#include "ComposerViewTest.moc"
