#include "PopoverFixture.h"
#include "QuickItems.h"
#include "SandboxDemo.h"
#include "SandboxProcess.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

// The names of lists, folders and spaces come from the service and are shown exactly as written:
// markup stays text (and its pictures are never fetched), "&" is no mnemonic, right-to-left text,
// emoji, blanks and a 300-character name come through whole. Signs in as the sandbox's
// hostile-names user, whose workspace holds nothing else.
class ListNamesTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;

    QStringList expectedListNames() const {
        return {SandboxDemo::markupListName(m_sandbox.webUrl(u"")),
                SandboxDemo::ampersandListName,
                SandboxDemo::rightToLeftListName,
                SandboxDemo::emojiListName,
                SandboxDemo::blanksListName,
                SandboxDemo::longListName(),
                QStringLiteral("Inside")};
    }

    QStringList expectedTitles() const {
        QStringList titles;
        for (const QString& name : expectedListNames()) {
            const QString folder =
                name == QLatin1String("Inside") ? SandboxDemo::hostileFolderName + QStringLiteral(" › ") : QString();
            titles.append(SandboxDemo::hostileSpaceName + QStringLiteral(" › ") + folder + name);
        }
        return titles;
    }

    QQuickItem* chooser() const { return qobject_cast<QQuickItem*>(m_fixture->find(QStringLiteral("listChooser"))); }

    // Draws the popover now, so that whatever its text items lay out is laid out and painted.
    void render() { QVERIFY(!m_fixture->popover.grabWindow().isNull()); }

private slots:
    void initTestCase() { QVERIFY2(PopoverFixture::startSandbox(m_sandbox), qPrintable(m_sandbox.errorString())); }

    void init() {
        m_fixture = PopoverFixture::shownAgainst(m_sandbox);
        QVERIFY(m_fixture);
        QSignalSpy finished(m_fixture->onboarding, &OnboardingModel::finished);
        m_fixture->onboarding->setToken(SandboxDemo::hostileNamesToken);
        m_fixture->onboarding->connect();
        QTRY_VERIFY_WITH_TIMEOUT(finished.count() == 1, 10'000);
        QCOMPARE(m_fixture->onboarding->errorMessage(), QString());
        QTRY_VERIFY(chooser());
        m_fixture->location->loadEntries();
        QTRY_COMPARE(m_fixture->location->entryTitles().size(), expectedTitles().size());
    }

    void cleanup() { m_fixture.reset(); }

    void theModelKeepsEveryNameAsTheServiceWroteIt() {
        QStringList titles = m_fixture->location->entryTitles();
        QStringList expected = expectedTitles();
        titles.sort();
        expected.sort();
        QCOMPARE(titles, expected);
    }

    void theOpenChooserListsEveryNameAsPlainText() {
        const QStringList titles = m_fixture->location->entryTitles();
        auto* popup = chooser()->property("popup").value<QObject*>();
        QVERIFY(popup);
        QVERIFY(QMetaObject::invokeMethod(popup, "open"));
        QTRY_VERIFY(popup->property("opened").toBool());
        render();
        auto* view = popup->property("contentItem").value<QQuickItem*>();
        QVERIFY(view);
        QTRY_COMPARE(view->property("count").toInt(), titles.size());
        for (int index = 0; index < titles.size(); ++index) {
            constexpr int contain = 4; // ListView.Contain
            QVERIFY(QMetaObject::invokeMethod(view, "positionViewAtIndex", Q_ARG(int, index), Q_ARG(int, contain)));
            QQuickItem* delegate = nullptr;
            QVERIFY(
                QMetaObject::invokeMethod(view, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, delegate), Q_ARG(int, index)));
            QVERIFY(delegate);
            render();
            QCOMPARE(QuickItems::plainText(delegate->property("contentItem").value<QObject*>()), titles.at(index));
        }
        QCOMPARE(m_fixture->picturesFetchedAfterPainting(m_sandbox), QStringList());
    }

    void theChosenNameShowsAsPlainTextInTheClosedChooserAndTheTitle() {
        const QStringList titles = m_fixture->location->entryTitles();
        auto* content = chooser()->property("contentItem").value<QObject*>();
        QObject* title = m_fixture->find(QStringLiteral("locationTitle"));
        QVERIFY(title);
        for (int index = 0; index < titles.size(); ++index) {
            m_fixture->location->select(index);
            QCOMPARE(m_fixture->location->currentIndex(), index);
            const QString name = m_fixture->app->currentContext()->entry().list.name;
            QVERIFY2(expectedListNames().contains(name), qPrintable(name));
            render();
            QTRY_COMPARE(QuickItems::plainText(content), titles.at(index));
            QTRY_COMPARE(QuickItems::plainText(title), name);
        }
        QCOMPARE(m_fixture->picturesFetchedAfterPainting(m_sandbox), QStringList());
    }
};

QTEST_MAIN(ListNamesTest)
#include "ListNamesTest.moc"
