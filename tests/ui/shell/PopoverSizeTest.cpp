#include "support/PopoverFixture.h"
#include "support/SandboxDemo.h"
#include "support/SandboxProcess.h"
#include "support/TestMain.h"

#include <QScreen>
#include <QTest>

// The popover is as tall as its page, between a floor and a ceiling, and stays on the screen as it
// grows; against norvane-sandbox's demo.
class PopoverSizeTest : public QObject {
    Q_OBJECT

    SandboxProcess m_sandbox;
    std::unique_ptr<PopoverFixture> m_fixture;

    PopoverWindow& popover() { return m_fixture->popover; }
    int bound(const char* name) { return popover().rootObject()->property(name).toInt(); }

    static QString lines(int count) {
        QStringList names;
        for (int line = 1; line <= count; ++line) {
            names.append(QStringLiteral("Task %1").arg(line));
        }
        return names.join(u'\n');
    }

private slots:
    void initTestCase() { QVERIFY(PopoverFixture::startSandbox(m_sandbox)); }

    void init() {
        m_fixture = PopoverFixture::signedInAgainst(m_sandbox, SandboxDemo::supportListID);
        QVERIFY(m_fixture);
        QTRY_VERIFY(m_fixture->find(QStringLiteral("taskName")));
    }

    void cleanup() { m_fixture.reset(); }

    void aShortPageKeepsThePopoverShorterThanItsCeiling() {
        QTRY_VERIFY(popover().height() >= bound("shortest"));
        QVERIFY2(popover().height() < bound("tallest"), qPrintable(QString::number(popover().height())));
    }

    void manyLinesGrowItToTheCeilingAndFewShrinkItAgain() {
        m_fixture->composer->setBulkMode(true);
        m_fixture->composer->setBulkLines(lines(2));
        QTRY_VERIFY(popover().height() < bound("tallest"));

        m_fixture->composer->setBulkLines(lines(60));
        QTRY_COMPARE(popover().height(), bound("tallest"));

        m_fixture->composer->setBulkLines(lines(2));
        QTRY_VERIFY(popover().height() < bound("tallest"));
    }

    void aLongTaskListFillsTheCeiling() {
        m_fixture->tabs->setActiveTab(TabPickerViewModel::Tasks);
        QTRY_COMPARE(popover().height(), bound("tallest"));
    }

    void growingNearTheScreensBottomKeepsItOnTheScreen() {
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        popover().hide();
        popover().toggle(QRect(available.center().x(), available.bottom() - 24, 24, 24));
        QVERIFY(QTest::qWaitForWindowExposed(&popover()));

        m_fixture->composer->setBulkMode(true);
        m_fixture->composer->setBulkLines(lines(60));
        QTRY_COMPARE(popover().height(), bound("tallest"));
        QTRY_VERIFY2(popover().geometry().bottom() <= available.bottom(),
                     qPrintable(QStringLiteral("%1 > %2").arg(popover().geometry().bottom()).arg(available.bottom())));
    }
};

NORVANEBAR_TEST_MAIN(PopoverSizeTest)
#include "PopoverSizeTest.moc"
