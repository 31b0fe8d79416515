#include "desktop/recording/X11ScreenPicker.h"
#include "support/QuickItems.h"
#include "support/TestMain.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QRasterWindow>
#include <QScreen>
#include <QTest>

namespace {
// A title with markup, an ampersand, right-to-left text, an emoji and 300 characters in all.
QString hostileTitle() {
    QString title = QStringLiteral("<b>Notes</b> & \u202Eemordnilap\u202C 🎬 ");
    return title + QString(300 - title.size(), QLatin1Char('x'));
}

// What the picker told.
class Answers : public ScreenContentPickerObserver {
public:
    void contentPickerDidSelect(const CaptureTarget& target) override { selected.append(target); }
    void contentPickerDidCancel() override { ++cancelled; }
    void contentPickerStartDidFail(const QString& description) override { failures.append(description); }

    QList<CaptureTarget> selected;
    int cancelled = 0;
    QStringList failures;
};

const X11CaptureWindow& x11(const CaptureTarget& target) {
    return std::get<X11CaptureWindow>(target.surface);
}
} // namespace

// Our own picker on the test's X display, driven by keyboard and mouse as a person would.
class X11ScreenPickerTest : public QObject {
    Q_OBJECT

    std::unique_ptr<X11ScreenPicker> m_picker;
    Answers m_answers;

    QQuickView& shownPicker() {
        m_picker->present(true);
        QQuickView* view = m_picker->pickerWindow();
        if (view) {
            view->requestActivate();
            (void)QTest::qWaitForWindowActive(view);
        }
        return *view;
    }
    QQuickItem* item(const QString& objectName) const {
        return QuickItems::visualChild(m_picker->pickerWindow()->rootObject(), objectName);
    }

private slots:
    void init() {
        m_picker = std::make_unique<X11ScreenPicker>();
        m_answers = Answers();
        m_picker->addObserver(&m_answers);
        m_picker->setActive(true);
    }
    void cleanup() { m_picker.reset(); }

    void aWindowIsChosenByKeyboardUnderItsOwnTitle() {
        QRasterWindow notes;
        notes.setTitle(hostileTitle());
        notes.setGeometry(QRect(40, 60, 320, 200));
        notes.show();
        QVERIFY(QTest::qWaitForWindowExposed(&notes));
        QQuickView& view = shownPicker();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const int index = m_picker->choices().windowTitles().indexOf(hostileTitle());
        QVERIFY(index >= 0);
        QQuickItem* choices = item(QStringLiteral("windowChoices"));
        QVERIFY(choices);
        choices->forceActiveFocus();
        choices->setProperty("currentIndex", index);
        QTRY_VERIFY(item(QStringLiteral("windowChoice%1").arg(index)));
        QCOMPARE(item(QStringLiteral("windowChoice%1").arg(index))->property("label").toString(), hostileTitle());
        QTest::keyClick(&view, Qt::Key_Return);
        QCOMPARE(m_answers.selected.size(), 1);
        const CaptureTarget& chosen = m_answers.selected.first();
        QCOMPARE(x11(chosen).window, quint32(notes.winId()));
        QVERIFY(x11(chosen).region.isEmpty());
        QCOMPARE(chosen.contentRect, QRectF(40, 60, 320, 200));
        QVERIFY(!view.isVisible());
    }

    void escapeCancels() {
        QQuickView& view = shownPicker();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QTest::keyClick(&view, Qt::Key_Escape);
        QCOMPARE(m_answers.cancelled, 1);
        QVERIFY(m_answers.selected.isEmpty());
        QVERIFY(!view.isVisible());
    }

    void aScreenIsTheWholeOfItsArea() {
        shownPicker();
        QCOMPARE(m_picker->choices().screenNames().value(0),
                 QStringLiteral("Screen 1 — %1 × %2")
                     .arg(QGuiApplication::primaryScreen()->geometry().width())
                     .arg(QGuiApplication::primaryScreen()->geometry().height()));
        QVERIFY(QMetaObject::invokeMethod(item(QStringLiteral("screenChoice0")), "clicked"));
        QCOMPARE(m_answers.selected.size(), 1);
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QCOMPARE(x11(m_answers.selected.first()).window, 0u);
        QCOMPARE(x11(m_answers.selected.first()).region, screen);
        QCOMPARE(m_answers.selected.first().contentRect, QRectF(screen));
    }

    void aRegionIsMovedAndSizedByKeyboard() {
        shownPicker();
        QVERIFY(QMetaObject::invokeMethod(item(QStringLiteral("regionChoice")), "clicked"));
        RegionSelectionWindow& region = m_picker->regionWindow();
        QVERIFY(QTest::qWaitForWindowExposed(&region));
        const QRect start = region.selection();
        QCOMPARE(start.size(), QGuiApplication::primaryScreen()->geometry().size() / 2);
        QTest::keyClick(&region, Qt::Key_Right);
        QTest::keyClick(&region, Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(region.selection(), QRect(start.topLeft() + QPoint(RegionSelectionWindow::keyStep, 0),
                                           start.size() + QSize(0, RegionSelectionWindow::keyStep)));
        QTest::keyClick(&region, Qt::Key_Return);
        QCOMPARE(m_answers.selected.size(), 1);
        QCOMPARE(x11(m_answers.selected.first()).region, region.selection());
        QVERIFY(!region.isVisible());
    }

    void aRegionIsDraggedWithTheMouse() {
        shownPicker();
        QVERIFY(QMetaObject::invokeMethod(item(QStringLiteral("regionChoice")), "clicked"));
        RegionSelectionWindow& region = m_picker->regionWindow();
        QVERIFY(QTest::qWaitForWindowExposed(&region));
        QTest::mousePress(&region, Qt::LeftButton, {}, QPoint(300, 200));
        QTest::mouseMove(&region, QPoint(200, 100));
        QTest::mouseRelease(&region, Qt::LeftButton, {}, QPoint(100, 50));
        QCOMPARE(m_answers.selected.size(), 1);
        QCOMPARE(x11(m_answers.selected.first()).region, QRect(QPoint(100, 50), QPoint(300, 200)));
    }

    void aTinyRegionOrEscapeCancels() {
        shownPicker();
        QVERIFY(QMetaObject::invokeMethod(item(QStringLiteral("regionChoice")), "clicked"));
        RegionSelectionWindow& region = m_picker->regionWindow();
        QVERIFY(QTest::qWaitForWindowExposed(&region));
        QTest::mousePress(&region, Qt::LeftButton, {}, QPoint(100, 100));
        QTest::mouseRelease(&region, Qt::LeftButton, {}, QPoint(104, 104));
        QCOMPARE(m_answers.cancelled, 1);
        shownPicker();
        QVERIFY(QMetaObject::invokeMethod(item(QStringLiteral("regionChoice")), "clicked"));
        QVERIFY(QTest::qWaitForWindowExposed(&region));
        QTest::keyClick(&region, Qt::Key_Escape);
        QCOMPARE(m_answers.cancelled, 2);
        QVERIFY(m_answers.selected.isEmpty());
    }
};

NORVANEBAR_TEST_MAIN(X11ScreenPickerTest)
#include "X11ScreenPickerTest.moc"
