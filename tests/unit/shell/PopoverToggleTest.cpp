#include "core/shell/PopoverToggle.h"
#include "support/TestMain.h"

#include <QTest>

class PopoverToggleTest : public QObject {
    Q_OBJECT

    qint64 m_now = 10'000;
    PopoverToggle m_toggle{[this] { return m_now; }};

private slots:
    void init() {
        m_toggle = PopoverToggle([this] { return m_now; });
    }

    void opensAHiddenPopover() { QVERIFY(m_toggle.shouldShow(false)); }

    void closesAVisiblePopover() { QVERIFY(!m_toggle.shouldShow(true)); }

    void aClickOnTheIconRightAfterFocusLossKeepsItClosed() {
        m_toggle.noteHiddenByFocusLoss();
        m_now += PopoverToggle::reopenGraceMs - 1;
        QVERIFY(!m_toggle.shouldShow(false));
    }

    void opensAgainOnceTheMomentHasPassed() {
        m_toggle.noteHiddenByFocusLoss();
        m_now += PopoverToggle::reopenGraceMs;
        QVERIFY(m_toggle.shouldShow(false));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(PopoverToggleTest)
#include "PopoverToggleTest.moc"
