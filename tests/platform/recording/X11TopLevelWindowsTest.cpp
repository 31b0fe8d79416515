#include "platform/linux/X11TopLevelWindows.h"
#include "platform/linux/X11Connection.h"
#include "support/TestMain.h"

#include <QRasterWindow>
#include <QTest>

namespace {
// A title with markup, an ampersand, right-to-left text, an emoji and 300 characters in all.
QString hostileTitle() {
    QString title = QStringLiteral("<b>Notes</b> & \u202Eemordnilap\u202C 🎬 ");
    return title + QString(300 - title.size(), QLatin1Char('x'));
}

std::unique_ptr<QRasterWindow> shownWindow(const QString& title, QRect geometry) {
    auto window = std::make_unique<QRasterWindow>();
    window->setTitle(title);
    window->setGeometry(geometry);
    window->show();
    return window;
}

const X11TopLevelWindow* find(const QList<X11TopLevelWindow>& windows, const QWindow& window) {
    for (const X11TopLevelWindow& listed : windows) {
        if (listed.window == window.winId()) {
            return &listed;
        }
    }
    return nullptr;
}

} // namespace

// The windows a recording may capture on X11, on the session's Xvfb: windows of the test's own with
// titles, hidden and untitled ones, the stacking order, and the list of a window manager.
class X11TopLevelWindowsTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() {
        xcb_delete_property(x11Connection(), rootWindow(x11Connection()),
                            internAtom(x11Connection(), QByteArrayLiteral("_NET_CLIENT_LIST_STACKING")));
        xcb_flush(x11Connection());
    }

    void shownWindowsAreListedWithTheirTitlesAsTheyAre() {
        const auto notes = shownWindow(hostileTitle(), QRect(40, 50, 320, 200));
        QVERIFY(QTest::qWaitForWindowExposed(notes.get()));
        const QList<X11TopLevelWindow> windows = X11TopLevelWindows::list(x11Connection());
        const X11TopLevelWindow* listed = find(windows, *notes);
        QVERIFY(listed);
        QCOMPARE(listed->title, hostileTitle());
        QCOMPARE(listed->geometry, QRect(40, 50, 320, 200));
    }

    void hiddenAndUntitledWindowsAreLeftOut() {
        xcb_connection_t* connection = x11Connection();
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
        const xcb_window_t untitled = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, untitled, screen->root, 10, 10, 100, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        xcb_map_window(connection, untitled);
        xcb_flush(connection);
        const auto hidden = shownWindow(QStringLiteral("Hidden"), QRect(0, 0, 100, 100));
        const auto shown = shownWindow(QStringLiteral("Shown"), QRect(0, 0, 100, 100));
        QVERIFY(QTest::qWaitForWindowExposed(hidden.get()));
        QVERIFY(QTest::qWaitForWindowExposed(shown.get()));
        QTRY_VERIFY(find(X11TopLevelWindows::list(connection), *hidden));
        hidden->hide();
        QTRY_VERIFY(!find(X11TopLevelWindows::list(connection), *hidden));
        const QList<X11TopLevelWindow> windows = X11TopLevelWindows::list(connection);
        QVERIFY(find(windows, *shown));
        QVERIFY(std::none_of(windows.begin(), windows.end(),
                             [untitled](const X11TopLevelWindow& window) { return window.window == untitled; }));
        xcb_destroy_window(connection, untitled);
        xcb_flush(connection);
    }

    void theTopmostWindowComesFirst() {
        const auto lower = shownWindow(QStringLiteral("Lower"), QRect(0, 0, 100, 100));
        const auto upper = shownWindow(QStringLiteral("Upper"), QRect(50, 50, 100, 100));
        QVERIFY(QTest::qWaitForWindowExposed(lower.get()));
        QVERIFY(QTest::qWaitForWindowExposed(upper.get()));
        upper->raise();
        QTRY_VERIFY(X11TopLevelWindows::list(x11Connection()).value(0).window == upper->winId());
        lower->raise();
        QTRY_VERIFY(X11TopLevelWindows::list(x11Connection()).value(0).window == lower->winId());
    }

    void aWindowManagersClientListIsFollowed() {
        const auto managed = shownWindow(QStringLiteral("Managed"), QRect(0, 0, 100, 100));
        const auto other = shownWindow(QStringLiteral("Other"), QRect(0, 0, 100, 100));
        QVERIFY(QTest::qWaitForWindowExposed(managed.get()));
        QVERIFY(QTest::qWaitForWindowExposed(other.get()));
        const auto id = xcb_window_t(managed->winId());
        xcb_change_property(x11Connection(), XCB_PROP_MODE_REPLACE, rootWindow(x11Connection()),
                            internAtom(x11Connection(), QByteArrayLiteral("_NET_CLIENT_LIST_STACKING")),
                            XCB_ATOM_WINDOW, 32, 1, &id);
        xcb_flush(x11Connection());
        const QList<X11TopLevelWindow> windows = X11TopLevelWindows::list(x11Connection());
        QCOMPARE(windows.size(), 1);
        QCOMPARE(windows.first().window, managed->winId());
        QCOMPARE(windows.first().title, QStringLiteral("Managed"));
    }

    void noConnectionListsNothing() { QVERIFY(X11TopLevelWindows::list(nullptr).isEmpty()); }
};

NORVANEBAR_TEST_MAIN(X11TopLevelWindowsTest)
#include "X11TopLevelWindowsTest.moc"
