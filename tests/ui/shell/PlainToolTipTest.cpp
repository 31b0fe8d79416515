#include "desktop/settings/SettingsWindow.h"
#include "platform/linux/AutostartEntry.h"
#include "support/ManualGlobalShortcuts.h"
#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TestMain.h"

#include <QQuickItem>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>

// Names from outside in tool tips, hovered as a person does, against norvane-sandbox's hostile
// names: the chip of a custom field named with markup, the avatar of an account named with markup
// and the remove button of a quick link named with markup each show their tip with the name exactly
// as written, and none of the pictures in the markup is fetched from the sandbox.
class PlainToolTipTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;

    QString picture(QStringView name) const {
        return m_sandbox.webUrl(SandboxDemo::hostilePicturePath(name)).toString();
    }

    // Moves the pointer onto the item and waits for a tool tip to show: the text it shows, or a note
    // of what is wrong (no tip, or one that isn't plain text).
    static QString tipOf(QQuickWindow& window, QQuickItem* target) {
        if (!target) {
            return QStringLiteral("<no item to hover>");
        }
        QTest::mouseMove(&window, target->mapToScene(QPointF(target->width() / 2, target->height() / 2)).toPoint());
        QQuickItem* tip = nullptr;
        if (!QTest::qWaitFor([&] {
                return (tip = QuickItems::visualChild(window.contentItem(), QStringLiteral("plainToolTipText"))) &&
                       tip->isVisible();
            })) {
            return QStringLiteral("<no tip shown>");
        }
        return QuickItems::plainText(tip);
    }

    // Scrolls the flickable the item is in, if any, so that the item stands in the middle of it.
    static void scrollIntoView(QQuickItem* target) {
        QQuickItem* flickable = target->parentItem();
        while (flickable && !flickable->inherits("QQuickFlickable")) {
            flickable = flickable->parentItem();
        }
        if (!flickable) {
            return;
        }
        auto* content = flickable->property("contentItem").value<QQuickItem*>();
        const qreal top = target->mapToItem(content, QPointF(0, 0)).y() - flickable->height() / 2;
        const qreal bottom = flickable->property("contentHeight").toReal() - flickable->height();
        flickable->setProperty("contentY", std::clamp(top, 0.0, std::max(bottom, 0.0)));
    }

    // The paths of the hostile pictures the sandbox was asked for, after the window was painted.
    QStringList picturesFetchedAfterPainting(QQuickWindow& window) {
        if (window.grabWindow().isNull()) {
            return {QStringLiteral("(the window could not be painted)")};
        }
        QTest::qWait(300);
        return SandboxDemo::hostilePictureRequests(m_sandbox.requests());
    }

private slots:
    void initTestCase() { QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString())); }

    // The popover shown, signed in as the hostile names' user with the list named with markup chosen.
    void init() {
        m_fixture = PopoverFixture::shownAgainst(m_sandbox);
        QVERIFY(m_fixture);
        QCOMPARE(runTask(m_fixture->app->signIn(SandboxDemo::hostileNamesToken)), std::nullopt);
        QVERIFY(m_fixture->state.chooseList(SandboxDemo::hostileNamesID, SandboxDemo::markupListID));
        QVERIFY(QTest::qWaitForWindowActive(&m_fixture->popover));
        QVERIFY(m_sandbox.clearRequests());
    }

    void cleanup() { m_fixture.reset(); }

    void aCustomFieldsNameShowsAsWrittenInItsChipsTip() {
        const QString name = SandboxDemo::hostileFieldName(m_sandbox.webUrl(u""));
        QVERIFY(name.contains(picture(u"field")));
        QString chipID;
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                for (const FieldChipListModel::Chip& chip : m_fixture->pages.fieldChips().shownChips()->chips()) {
                    if (chip.title == name) {
                        chipID = chip.chipID;
                    }
                }
                return !chipID.isEmpty();
            }(),
            15000);
        QQuickItem* chip = nullptr;
        QTRY_VERIFY(
            (chip = QuickItems::visualChild(m_fixture->popover.contentItem(), QStringLiteral("chip-") + chipID)) &&
            chip->isVisible() && chip->width() > 0);
        QCOMPARE(tipOf(m_fixture->popover, chip), name);
        QCOMPARE(picturesFetchedAfterPainting(m_fixture->popover), QStringList());
    }

    void anAccountsNameShowsAsWrittenInTheAvatarsTip() {
        const QString name = SandboxDemo::hostileUserName(m_sandbox.webUrl(u""));
        QVERIFY(name.contains(picture(u"user")));
        QQuickItem* avatar = nullptr;
        QTRY_VERIFY(
            (avatar = QuickItems::visualChild(m_fixture->popover.contentItem(), QStringLiteral("accountSwitcher"))) &&
            avatar->isVisible() && avatar->width() > 0);
        QCOMPARE(tipOf(m_fixture->popover, avatar),
                 QStringLiteral("Signed in as %1 — click to switch account").arg(name));
        QCOMPARE(picturesFetchedAfterPainting(m_fixture->popover), QStringList());
    }

    void aQuickLinksNameShowsAsWrittenInItsRemoveButtonsTip() {
        const QString name = QStringLiteral("<b>Board</b> & \"links\" <img src=\"%1\">").arg(picture(u"quick-link"));
        m_fixture->app->settings().modify([&name](AppSettings& settings) {
            settings.bookmarks.append({QUuid::createUuid(), name, QStringLiteral("https://example.com/board")});
        });
        QTemporaryDir autostart;
        AutostartEntry loginItem(autostart.path(), QStringLiteral("/usr/bin/norvanebar"));
        ManualGlobalShortcuts shortcuts;
        HotKeyManager hotKeys(shortcuts);
        SettingsWindow window(*m_fixture->app, loginItem, hotKeys);
        window.showTab(SettingsTab::general);
        QVERIFY(QTest::qWaitForWindowActive(&window.view()));
        QQuickItem* remove = nullptr;
        QTRY_VERIFY(
            (remove = QuickItems::visualChild(window.view().contentItem(), QStringLiteral("removeQuickLink0"))) &&
            remove->isVisible() && remove->width() > 0);
        scrollIntoView(remove);
        QTRY_VERIFY(QRectF(0, 0, window.view().width(), window.view().height())
                        .contains(remove->mapRectToScene(QRectF(0, 0, remove->width(), remove->height()))));
        QCOMPARE(tipOf(window.view(), remove), QStringLiteral("Remove ") + name);
        QCOMPARE(picturesFetchedAfterPainting(window.view()), QStringList());
    }
};

NORVANEBAR_TEST_MAIN(PlainToolTipTest)
#include "PlainToolTipTest.moc"
