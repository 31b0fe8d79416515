// The baseline the tray benchmarks read NorvaneBar against: the least a Qt Quick tray program
// can be. A QApplication with the software scene graph, a tray icon shown at once, a Qt Quick
// window created hidden, and the same D-Bus toggle NorvaneBar offers, so each figure has a
// like-for-like partner.
#include <QApplication>
#include <QDBusConnection>
#include <QIcon>
#include <QPixmap>
#include <QQuickStyle>
#include <QQuickView>
#include <QQuickWindow>
#include <QSystemTrayIcon>
#include <QTimer>

class BareToggle : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.norvanebar.NorvaneBar")

public:
    explicit BareToggle(QQuickView* view)
        : m_view(view) {
        connect(view, &QWindow::visibleChanged, this, [this](bool visible) {
            if (!visible) {
                emit PopoverVisibilityChanged(false);
            }
        });
    }

public slots:
    Q_SCRIPTABLE void TogglePopover() {
        if (m_view->isVisible()) {
            m_view->hide();
            return;
        }
        connect(
            m_view, &QQuickWindow::frameSwapped, this, [this] { emit PopoverVisibilityChanged(true); },
            Qt::SingleShotConnection);
        m_view->show();
    }

signals:
    Q_SCRIPTABLE void PopoverVisibilityChanged(bool visible);

private:
    QQuickView* m_view;
};

int main(int argc, char* argv[]) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    QPixmap pixmap(18, 18);
    pixmap.fill(Qt::black);
    QSystemTrayIcon tray{QIcon(pixmap)};
    tray.show();

    QQuickView view;
    view.setFlags(Qt::Tool | Qt::FramelessWindowHint);
    view.setResizeMode(QQuickView::SizeViewToRootObject);
    BareToggle toggle(&view);
    QTimer::singleShot(0, &view, [&view] { view.setSource(QUrl(QStringLiteral("qrc:/BarePopover.qml"))); });

    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(QStringLiteral("/com/norvanebar/NorvaneBar"), &toggle,
                       QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportScriptableSignals);
    bus.registerService(QStringLiteral("com.norvanebar.BareTrayBaseline"));
    return QApplication::exec();
}

#include "BareTrayBaseline.moc"
