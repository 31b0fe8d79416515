#include "PopoverFixture.h"
#include "QuickItems.h"
#include "api/NVError.h"
#include "auth/KeychainStoreError.h"
#include "auth/PersonalTokenError.h"
#include "compose/AttachmentSizeLimits.h"
#include "shell/StatusItem.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQuickItem>
#include <QSystemTrayIcon>
#include <QTest>
#include <QTranslator>

namespace {
// Marks every text it is asked for, so a test sees which texts go through translation.
class MarkingTranslator : public QTranslator {
public:
    QString translate(const char* /*context*/, const char* sourceText, const char* /*disambiguation*/,
                      int /*n*/) const override {
        return marked(QString::fromUtf8(sourceText));
    }
    bool isEmpty() const override { return false; }

    static QString marked(const QString& text) { return u'«' + text + u'»'; }
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
                  {QStringLiteral("submit"), QVariant::fromValue(m_fixture->submit)},
                  {QStringLiteral("tabs"), QVariant::fromValue(m_fixture->tabs)},
                  {QStringLiteral("myDay"), QVariant::fromValue(m_fixture->myDay)}});
        QVERIFY(signedIn);
        const QStringList names = QuickItems::accessibleNames(signedIn.get());
        for (const char16_t* text :
             {u"NorvaneBar", u"List for new tasks", u"Attachments", u"Paste or drop files here to attach them.",
              u"Press Esc to close.", u"Drop to attach", u"Compose mode", u"Single task",
              u"Multiple tasks — one per line", u"Task name", u"Description", u"Create Task", u"Dismiss", u"Create",
              u"Tasks", u"Switch Norvane account"}) {
            QVERIFY2(names.contains(marked(text)), qPrintable(names.join(u'|')));
        }
        QCOMPARE(signedIn->findChild<QObject*>(QStringLiteral("signedInUser"))->property("text").toString(),
                 marked(u"Signed in as %1").arg(QString()));
        QCOMPARE(signedIn->findChild<QObject*>(QStringLiteral("listChooser"))->property("displayText").toString(),
                 marked(u"Choose workspace and list…"));
        QCOMPARE(signedIn->findChild<QObject*>(QStringLiteral("locationTitle"))->property("text").toString(),
                 marked(u"Choose workspace and list…"));
        QCOMPARE(signedIn->findChild<QObject*>(QStringLiteral("attachmentCount"))->property("text").toString(),
                 marked(u"0 attachments"));
    }

    void anAttachmentRowButNotItsFilename() {
        const std::unique_ptr<QQuickItem> row = page(QStringLiteral("compose/qml/AttachmentRow.qml"),
                                                     {{QStringLiteral("index"), 0},
                                                      {QStringLiteral("filename"), QStringLiteral("a.png")},
                                                      {QStringLiteral("sizeText"), QStringLiteral("1 MB")},
                                                      {QStringLiteral("note"), QString()},
                                                      {QStringLiteral("kind"), int(AttachmentListModel::Image)}});
        QVERIFY(row);
        QCOMPARE(QuickItems::visualChild(row.get(), QStringLiteral("attachmentKind"))->property("text").toString(),
                 marked(u"IMAGE"));
        QCOMPARE(QuickItems::visualChild(row.get(), QStringLiteral("attachmentName"))->property("text").toString(),
                 QStringLiteral("a.png"));
        QVERIFY(QuickItems::accessibleNames(row.get()).contains(QStringLiteral("a.png, 1 MB")));
        QVERIFY(QuickItems::accessibleNames(row.get()).contains(marked(u"Remove %1").arg(QStringLiteral("a.png"))));
    }

    void theTrayIcon() {
        QCOMPARE(StatusItemBadge::make(1, 0, false).toolTip, marked(u"1 background task in progress"));
        QCOMPARE(StatusItemBadge::make(2, 0, false).toolTip, marked(u"%1 background tasks in progress").arg(2));
        StatusItem item;
        item.create();
        auto* icon = item.findChild<QSystemTrayIcon*>();
        QVERIFY(icon && icon->contextMenu());
        QCOMPARE(icon->toolTip(), marked(u"NorvaneBar — new Norvane task"));
        QCOMPARE(icon->contextMenu()->actions().value(0)->text(), marked(u"Quit NorvaneBar"));
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

QTEST_MAIN(TranslatableTextsTest)
#include "TranslatableTextsTest.moc"
