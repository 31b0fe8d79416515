#include "support/PopoverFixture.h"
#include "support/QuickItems.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TestMain.h"

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

    // The picker, opened as the location selector opens it.
    QObject* picker() const { return m_fixture->find(QStringLiteral("locationPicker")); }
    QQuickItem* inPicker(const QString& objectName) const {
        return QuickItems::visualChild(picker()->property("contentItem").value<QQuickItem*>(), objectName);
    }

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
        QTRY_VERIFY(picker());
        QVERIFY(QMetaObject::invokeMethod(picker(), "open"));
        QTRY_VERIFY(picker()->property("opened").toBool());
        QTRY_COMPARE(m_fixture->location->rowModel().rowCount(), expectedTitles().size());
    }

    void cleanup() { m_fixture.reset(); }

    void theModelKeepsEveryNameAsTheServiceWroteIt() {
        QStringList titles;
        for (const ListEntry& entry : m_fixture->location->rowModel().entries()) {
            titles.append(entry.path() + QStringLiteral(" › ") + entry.list.name);
        }
        QStringList expected = expectedTitles();
        titles.sort();
        expected.sort();
        QCOMPARE(titles, expected);
    }

    void theOpenPickerListsEveryNameAsPlainTextAndElidesTheLongOnes() {
        const QList<ListEntry> entries = m_fixture->location->rowModel().entries();
        auto* view = qobject_cast<QQuickItem*>(inPicker(QStringLiteral("locationList")));
        QVERIFY(view);
        render();
        QTRY_COMPARE(view->property("count").toInt(), entries.size());
        const qreal popoverWidth = m_fixture->popover.width();
        for (int index = 0; index < entries.size(); ++index) {
            constexpr int contain = 4; // ListView.Contain
            QVERIFY(QMetaObject::invokeMethod(view, "positionViewAtIndex", Q_ARG(int, index), Q_ARG(int, contain)));
            QQuickItem* row = nullptr;
            QVERIFY(QMetaObject::invokeMethod(view, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, row), Q_ARG(int, index)));
            QVERIFY(row);
            render();
            QQuickItem* name = QuickItems::visualChild(row, QStringLiteral("listName"));
            QCOMPARE(QuickItems::plainText(name), entries.at(index).list.name);
            QCOMPARE(QuickItems::plainText(QuickItems::visualChild(row, QStringLiteral("listPath"))),
                     entries.at(index).path());
            // Whole inside the popover: a long name is cut short, never the popover made wider.
            QVERIFY(name->mapToScene(QPointF(name->width(), 0)).x() <= popoverWidth);
            if (entries.at(index).list.name == SandboxDemo::longListName()) {
                QVERIFY(name->property("truncated").toBool());
            }
        }
        QCOMPARE(m_fixture->popover.width(), popoverWidth);
        QCOMPARE(QuickItems::plainText(
                     inPicker(QStringLiteral("workspacePicker"))->property("contentItem").value<QObject*>()),
                 QStringLiteral("Hostile & <b>names</b>"));
        QCOMPARE(m_fixture->picturesFetchedAfterPainting(m_sandbox), QStringList());
    }

    void theChosenNameShowsAsPlainTextInTheTitle() {
        const QList<ListEntry> entries = m_fixture->location->rowModel().entries();
        auto* title = qobject_cast<QQuickItem*>(m_fixture->find(QStringLiteral("locationTitle")));
        QVERIFY(title);
        for (int index = 0; index < entries.size(); ++index) {
            m_fixture->location->choose(index);
            const QString name = m_fixture->app->currentContext()->entry().list.name;
            QCOMPARE(name, entries.at(index).list.name);
            QVERIFY2(expectedListNames().contains(name), qPrintable(name));
            render();
            QTRY_COMPARE(QuickItems::plainText(title), name);
            QVERIFY(title->mapToScene(QPointF(title->width(), 0)).x() <= m_fixture->popover.width());
        }
        QCOMPARE(m_fixture->picturesFetchedAfterPainting(m_sandbox), QStringList());
    }
};

NORVANEBAR_TEST_MAIN(ListNamesTest)
#include "ListNamesTest.moc"
