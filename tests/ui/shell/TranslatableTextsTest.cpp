#include "core/api/NVError.h"
#include "core/auth/KeychainStoreError.h"
#include "core/auth/PersonalTokenError.h"
#include "core/compose/AttachmentSizeLimits.h"
#include "desktop/settings/SettingsWindow.h"
#include "desktop/shell/StatusItem.h"
#include "platform/linux/AutostartEntry.h"
#include "support/ManualGlobalShortcuts.h"
#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQuickItem>
#include <QSystemTrayIcon>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

namespace {
// Marks every text it is asked for, so a test sees which texts go through translation. A text
// counted with %n is marked in the form the English catalogue gives for its count.
class MarkingTranslator : public QTranslator {
public:
    MarkingTranslator() { m_english.load(QStringLiteral(":/i18n/norvanebar_en.qm")); }

    QString translate(const char* context, const char* sourceText, const char* disambiguation, int n) const override {
        const QString english = m_english.translate(context, sourceText, disambiguation, n);
        return marked(english.isEmpty() ? QString::fromUtf8(sourceText) : english);
    }
    bool isEmpty() const override { return false; }

    static QString marked(const QString& text) { return u'«' + text + u'»'; }

private:
    QTranslator m_english;
};

QString marked(const char16_t* text) {
    return MarkingTranslator::marked(QString::fromUtf16(text));
}
} // namespace

// Every text NorvaneBar shows goes through translation with its English as the source text; names
// that come from the service or the person do not.
class TranslatableTextsTest : public QObject {
    Q_OBJECT

    MarkingTranslator m_translator;
    std::unique_ptr<PopoverFixture> m_fixture;

    // A page of the module made in the popover's engine with these required properties.
    std::unique_ptr<QQuickItem> page(const QString& file, const QVariantMap& properties) {
        m_fixture->popover.prepare();
        QQmlComponent component(m_fixture->popover.engine(), QUrl(QStringLiteral("qrc:/qt/qml/NorvaneBar/") + file));
        std::unique_ptr<QObject> object(component.createWithInitialProperties(properties));
        if (!object) {
            qWarning("%s", qPrintable(component.errorString()));
            return nullptr;
        }
        return std::unique_ptr<QQuickItem>(qobject_cast<QQuickItem*>(object.release()));
    }

private slots:
    void initTestCase() {
        PopoverWindow::configureQuick();
        QVERIFY(QCoreApplication::installTranslator(&m_translator));
    }

    void cleanupTestCase() { QCoreApplication::removeTranslator(&m_translator); }

    void init() { m_fixture = std::make_unique<PopoverFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void theOnboardingPageAndTheWindow() {
        PopoverWindow& popover = m_fixture->popover;
        popover.prepare();
        QVERIFY(popover.rootObject());
        QCOMPARE(popover.title(), marked(u"NorvaneBar"));
        // The token field takes its own accessible interface once the event loop has run.
        QTRY_VERIFY(QuickItems::accessibleNames(popover.rootObject()).contains(marked(u"Norvane personal API token")));
        const QStringList names = QuickItems::accessibleNames(popover.rootObject());
        for (const char16_t* text :
             {u"NorvaneBar", u"Connect to Norvane",
              u"NorvaneBar creates Norvane tasks straight from your panel. Paste your personal API token to get "
              u"started.",
              u"Norvane personal API token", u"Find your token: Norvane → Settings → Apps", u"Connect"}) {
            QVERIFY2(names.contains(marked(text)), qPrintable(names.join(u'|')));
        }
        QCOMPARE(m_fixture->find(QStringLiteral("tokenField"))->property("placeholderText").toString(),
                 marked(u"Personal API token (pk_…)"));
    }

    void theAccountPane() {
        const std::unique_ptr<QQuickItem> pane =
            page(QStringLiteral("auth/qml/AccountSettingsView.qml"),
                 {{QStringLiteral("accounts"), QVariant::fromValue(m_fixture->accounts)}});
        QVERIFY(pane);
        const QStringList names = QuickItems::accessibleNames(pane.get());
        for (const char16_t* text :
             {u"Norvane Accounts",
              u"Personal API tokens are stored in the system keyring, one per account. Switch anytime from here or "
              u"from the account menu in the popover.",
              u"Norvane Account",
              u"Find your token in Norvane under Settings → Apps → API Token. You can add as many accounts as you "
              u"like — for example a personal and a company account.",
              u"Get your token…", u"Connect"}) {
            QVERIFY2(names.contains(marked(text)), qPrintable(names.join(u'|')));
        }
        QCOMPARE(pane->findChild<QObject*>(QStringLiteral("tokenField"))->property("placeholderText").toString(),
                 marked(u"Personal API token"));
    }

    void theSignedInPage() {
        const std::unique_ptr<QQuickItem> signedIn =
            page(QStringLiteral("shell/qml/SignedInPopoverView.qml"),
                 {{QStringLiteral("auth"), QVariant::fromValue(m_fixture->auth)},
                  {QStringLiteral("accounts"), QVariant::fromValue(m_fixture->accounts)},
                  {QStringLiteral("location"), QVariant::fromValue(m_fixture->location)},
                  {QStringLiteral("attachments"), QVariant::fromValue(m_fixture->attachments)},
                  {QStringLiteral("composer"), QVariant::fromValue(m_fixture->composer)},
                  {QStringLiteral("templates"), QVariant::fromValue(m_fixture->templates)},
                  {QStringLiteral("exporter"), QVariant::fromValue(m_fixture->exporter)},
                  {QStringLiteral("submit"), QVariant::fromValue(m_fixture->submit)},
                  {QStringLiteral("settingsLauncher"), QVariant::fromValue(&m_fixture->pages.settingsLauncher())},
                  {QStringLiteral("tabs"), QVariant::fromValue(m_fixture->tabs)},
                  {QStringLiteral("myDay"), QVariant::fromValue(m_fixture->myDay)},
                  {QStringLiteral("recording"), QVariant::fromValue(&m_fixture->pages.recording())}});
        QVERIFY(signedIn);
        const QStringList names = QuickItems::accessibleNames(signedIn.get());
        for (const char16_t* text : {u"NorvaneBar",
                                     u"List for new tasks",
                                     u"Attachments",
                                     u"Press Esc to close.",
                                     u"Template",
                                     u"Record screen",
                                     u"NorvaneBar settings",
                                     u"Drop to attach",
                                     u"Compose mode",
                                     u"Single task",
                                     u"Multiple tasks — one per line",
                                     u"Task name",
                                     u"Description",
                                     u"Create Task",
                                     u"Dismiss",
                                     u"Create",
                                     u"Tasks",
                                     u"Fields",
                                     u"Status",
                                     u"Assignee",
                                     u"Due date",
                                     u"Switch Norvane account"}) {
            QVERIFY2(names.contains(marked(text)), qPrintable(names.join(u'|')));
        }
        QCOMPARE(signedIn->findChild<QObject*>(QStringLiteral("signedInUser"))->property("text").toString(),
                 marked(u"Signed in as %1").arg(QString()));
        QCOMPARE(signedIn->findChild<QObject*>(QStringLiteral("locationTitle"))->property("text").toString(),
                 marked(u"Choose workspace and list…"));
        QCOMPARE(signedIn->findChild<QObject*>(QStringLiteral("attachmentCount"))->property("text").toString(),
                 marked(u"0 attachments"));
        auto* templateMenu = signedIn->findChild<QObject*>(QStringLiteral("templateMenu"));
        QVERIFY(templateMenu);
        QCOMPARE(
            templateMenu->findChild<QObject*>(QStringLiteral("saveCurrentAsTemplate"))->property("label").toString(),
            marked(u"Save Current as Template…"));
        auto* templateButton = signedIn->findChild<QQuickItem*>(QStringLiteral("templateMenuButton"));
        QVERIFY(templateButton);
        QCOMPARE(QAccessible::queryAccessibleInterface(templateButton)->text(QAccessible::Description),
                 marked(u"Apply or save a template"));
        auto* sheet = signedIn->findChild<QObject*>(QStringLiteral("saveTemplateSheet"));
        QVERIFY(sheet);
        QCOMPARE(sheet->property("title").toString(), marked(u"Save as Template"));
        QCOMPARE(signedIn->findChild<QObject*>(QStringLiteral("saveFailedDialog"))->property("title").toString(),
                 marked(u"Couldn't save file"));
    }

    void theLocationPickerButNotTheNamesOfLists() {
        const std::unique_ptr<QQuickItem> selector =
            page(QStringLiteral("hierarchy/qml/LocationSelector.qml"),
                 {{QStringLiteral("picker"), QVariant::fromValue(m_fixture->location)}});
        QVERIFY(selector);
        QCOMPARE(selector->findChild<QObject*>(QStringLiteral("locationTitle"))->property("text").toString(),
                 marked(u"Choose workspace and list…"));
        auto* pickerView = selector->findChild<QObject*>(QStringLiteral("locationPicker"));
        QVERIFY(pickerView);
        const QStringList names = QuickItems::accessibleNames(pickerView->property("contentItem").value<QQuickItem*>());
        for (const char16_t* text :
             {u"Search lists", u"Workspace", u"Refresh lists", u"Lists", u"No lists in this workspace", u"Try again"}) {
            QVERIFY2(names.contains(marked(text)), qPrintable(names.join(u'|')));
        }
        QCOMPARE(m_fixture->location->noMatchTitle(), marked(u"No lists match “%1”").arg(QString()));

        const std::unique_ptr<QQuickItem> row =
            page(QStringLiteral("hierarchy/qml/LocationRow.qml"),
                 {{QStringLiteral("picker"), QVariant::fromValue(m_fixture->location)},
                  {QStringLiteral("index"), 0},
                  {QStringLiteral("listID"), QStringLiteral("1")},
                  {QStringLiteral("name"), QStringLiteral("Inbox")},
                  {QStringLiteral("path"), QStringLiteral("Product")}});
        QVERIFY(row);
        const QStringList rowNames = QuickItems::accessibleNames(row.get());
        QVERIFY2(rowNames.contains(marked(u"Add to bookmarks")), qPrintable(rowNames.join(u'|')));
        QVERIFY2(rowNames.contains(QStringLiteral("Inbox")), qPrintable(rowNames.join(u'|')));
    }

    void anAttachmentThumbnailButNotItsFilename() {
        const std::unique_ptr<QQuickItem> thumbnail =
            page(QStringLiteral("compose/qml/AttachmentThumbnail.qml"),
                 {{QStringLiteral("index"), 0},
                  {QStringLiteral("filename"), QStringLiteral("a.mov")},
                  {QStringLiteral("fileURL"), QUrl::fromLocalFile(QStringLiteral("/nowhere/a.mov"))},
                  {QStringLiteral("sizeText"), QStringLiteral("1 MB")},
                  {QStringLiteral("note"), QString()},
                  {QStringLiteral("kind"), int(AttachmentListModel::Video)}});
        QVERIFY(thumbnail);
        QCOMPARE(
            QuickItems::visualChild(thumbnail.get(), QStringLiteral("attachmentName"))->property("text").toString(),
            QStringLiteral("a.mov"));
        QVERIFY(QuickItems::accessibleNames(thumbnail.get()).contains(QStringLiteral("a.mov, 1 MB")));
        QVERIFY(
            QuickItems::accessibleNames(thumbnail.get()).contains(marked(u"Remove %1").arg(QStringLiteral("a.mov"))));
        auto* menu = thumbnail->findChild<QObject*>(QStringLiteral("attachmentMenu"));
        QVERIFY(menu);
        QCOMPARE(menu->findChild<QObject*>(QStringLiteral("saveAttachment"))->property("label").toString(),
                 marked(u"Save to Disk…"));
        QCOMPARE(menu->findChild<QObject*>(QStringLiteral("removeAttachmentItem"))->property("label").toString(),
                 marked(u"Remove"));
    }

    void theTrayIcon() {
        QCOMPARE(StatusItemBadge::make(1, 0, false).toolTip, marked(u"1 background task in progress"));
        QCOMPARE(StatusItemBadge::make(2, 0, false).toolTip, marked(u"%1 background tasks in progress").arg(2));
        StatusItem item;
        item.create();
        auto* icon = item.findChild<QSystemTrayIcon*>();
        QVERIFY(icon && icon->contextMenu());
        QCOMPARE(icon->toolTip(), marked(u"NorvaneBar — new Norvane task"));
        item.setBookmarks(
            {Bookmark{.name = QStringLiteral("Docs"), .urlString = QStringLiteral("https://docs.example")}});
        QStringList entries;
        for (const QAction* action : icon->contextMenu()->actions()) {
            entries.append(action->text());
        }
        QCOMPARE(entries, (QStringList{marked(u"New Task"), marked(u"Record Screen…"), marked(u"Quick Links"),
                                       marked(u"Settings…"), QString(), marked(u"Quit NorvaneBar")}));
        // A link's name is the person's own.
        QCOMPARE(icon->contextMenu()->actions().value(2)->menu()->actions().value(0)->text(), QStringLiteral("Docs"));
    }

    void theSettingsWindowButNotTheNamesOfLinks() {
        m_fixture->app->settings().modify([](AppSettings& settings) {
            settings.bookmarks = {
                Bookmark{.name = QStringLiteral("Docs"), .urlString = QStringLiteral("https://docs.example")}};
        });
        QTemporaryDir home;
        AutostartEntry loginItem(home.filePath(QStringLiteral("autostart")), QStringLiteral("/usr/bin/norvanebar"));
        ManualGlobalShortcuts shortcuts;
        HotKeyManager hotKeys(shortcuts);
        SettingsWindow window(*m_fixture->app, loginItem, hotKeys);
        window.setCurrentTab(int(SettingsTab::general));
        window.prepare();
        QVERIFY(window.view().rootObject());
        QCOMPARE(window.view().title(), marked(u"NorvaneBar Settings"));
        const QStringList names = QuickItems::accessibleNames(window.view().rootObject());
        for (const char16_t* text :
             {u"Account", u"Fields", u"Templates", u"General", u"Show due count in panel",
              u"Shows overdue and due-today tasks assigned to you next to the icon.", u"Default workspace",
              u"Git Branch Names", u"Branch name format", u"Default reminder lead time", u"Launch at login",
              u"Quick Links", u"Quick links appear in the tray icon's right-click menu and open in your browser.",
              u"Add Quick Link", u"Shortcuts", u"New task from anywhere", u"Screenshot capture",
              u"Apply template on screenshot"}) {
            QVERIFY2(names.contains(marked(text)), qPrintable(names.join(u'|')));
        }
        QVERIFY2(names.contains(marked(u"Remove ") + QStringLiteral("Docs")), qPrintable(names.join(u'|')));
        QCOMPARE(window.general().reminderLeadLabels().value(0), marked(u"At due time"));
        QCOMPARE(window.general().reminderLeadLabels().value(1), marked(u"5 minutes before"));
        QCOMPARE(window.fields().defaultFields()->data(window.fields().defaultFields()->index(3),
                                                       FieldToggleModel::LabelRole),
                 QVariant(marked(u"Due date")));
    }

    void theTemplatesTabAndItsSheetButNotTheNamesOfTemplates() {
        QTemporaryDir home;
        AutostartEntry loginItem(home.filePath(QStringLiteral("autostart")), QStringLiteral("/usr/bin/norvanebar"));
        ManualGlobalShortcuts shortcuts;
        HotKeyManager hotKeys(shortcuts);
        SettingsWindow window(*m_fixture->app, loginItem, hotKeys);
        window.setCurrentTab(int(SettingsTab::templates));
        window.prepare();
        QVERIFY(window.view().rootObject());
        QStringList names = QuickItems::accessibleNames(window.view().contentItem());
        for (const char16_t* text :
             {u"Templates prefill the composer. A pinned list is selected automatically when applied.", u"No templates",
              u"Save a template from the composer menu, or create one here.", u"New Template"}) {
            QVERIFY2(names.contains(marked(text)), qPrintable(names.join(u'|')));
        }

        TaskTemplate stored;
        stored.name = QStringLiteral("Bug report");
        m_fixture->app->settings().modify([&stored](AppSettings& settings) { settings.templates = {stored}; });
        window.templates().edit(0);
        QTRY_VERIFY(QuickItems::accessibleNames(window.view().contentItem()).contains(marked(u"Edit Template")));
        names = QuickItems::accessibleNames(window.view().contentItem());
        for (const char16_t* text :
             {u"Name", u"Pinned list", u"No pinned list", u"Task name", u"Description", u"Cancel", u"Save", u"Clear"}) {
            QVERIFY2(names.contains(marked(text)), qPrintable(names.join(u'|')));
        }
        for (const QString& text :
             {marked(u"Edit ") + QStringLiteral("Bug report"), marked(u"Delete ") + QStringLiteral("Bug report")}) {
            QVERIFY2(names.contains(text), qPrintable(names.join(u'|')));
        }
    }

    void theCoresMessages() {
        QCOMPARE(NVError(NVError::Network{}).errorDescription(),
                 marked(u"Couldn't reach Norvane. Check your connection."));
        QCOMPARE(NVError(NVError::RateLimited{}).errorDescription(),
                 marked(u"Norvane rate limit reached. Try again in a moment."));
        QCOMPARE(PersonalTokenError::invalidFormat().errorDescription(),
                 marked(u"That doesn't look like a Norvane personal API token. Copy the full token from Norvane → "
                        u"Settings → Apps (it starts with pk_)."));
        QCOMPARE(KeychainStoreError::writeFailed(7).errorDescription(),
                 marked(u"Couldn't save your API token to the system keyring (error %1).").arg(7));
        QCOMPARE(std::get<AttachmentSizeLimits::Rejected>(AttachmentSizeLimits::validate(0)).message,
                 marked(u"The file is empty."));
        QCOMPARE(std::get<AttachmentSizeLimits::Warning>(AttachmentSizeLimits::validate(600'000'000)).message,
                 marked(u"This file is %1. Norvane allows up to 1 GB per attachment.").arg(QStringLiteral("600 MB")));
    }
};

NORVANEBAR_TEST_MAIN(TranslatableTextsTest)
#include "TranslatableTextsTest.moc"
