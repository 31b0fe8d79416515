#include "desktop/recording/X11ScreenPicker.h"

#include "desktop/shell/PopoverWindow.h"
#include "platform/linux/X11Connection.h"

#include <QScreen>

namespace {
// A rectangle of device-independent pixels on `screen` in the X server's pixels.
QRect inPixels(const QRect& rect, const QScreen& screen) {
    const double ratio = screen.devicePixelRatio();
    return QRect(QPoint(int(rect.x() * ratio), int(rect.y() * ratio)),
                 QSize(int(rect.width() * ratio), int(rect.height() * ratio)));
}

// A part of the root window; its area in device-independent pixels is the content.
CaptureTarget rootRegion(const QRect& pixels, double ratio) {
    CaptureTarget target;
    target.contentRect =
        QRectF(pixels.x() / ratio, pixels.y() / ratio, pixels.width() / ratio, pixels.height() / ratio);
    target.pointPixelScale = ratio;
    target.surface = CaptureTarget::X11Window{.window = 0, .region = pixels};
    return target;
}
} // namespace

X11ScreenPicker::X11ScreenPicker(QObject* parent)
    : QObject(parent) {
    connect(&m_choices, &ScreenPickerViewModel::screenChosen, this,
            [this](const ScreenPickerViewModel::Screen& screen) {
                const QScreen* primary = QGuiApplication::primaryScreen();
                select(rootRegion(screen.geometry, primary ? primary->devicePixelRatio() : 1.0));
            });
    connect(&m_choices, &ScreenPickerViewModel::windowChosen, this, [this](const X11TopLevelWindow& window) {
        const QScreen* primary = QGuiApplication::primaryScreen();
        const double ratio = primary ? primary->devicePixelRatio() : 1.0;
        CaptureTarget target = rootRegion(window.geometry, ratio);
        target.surface = CaptureTarget::X11Window{.window = window.window, .region = {}};
        select(target);
    });
    connect(&m_choices, &ScreenPickerViewModel::regionWanted, this, [this] {
        closePicker();
        m_region.present();
    });
    connect(&m_choices, &ScreenPickerViewModel::cancelled, this, &X11ScreenPicker::cancel);
    connect(&m_region, &RegionSelectionWindow::selected, this, [this](const QRect& region) {
        const QScreen* screen = m_region.screen();
        const double ratio = screen ? screen->devicePixelRatio() : 1.0;
        const QRect origin = screen ? screen->geometry() : QRect();
        select(rootRegion(screen ? inPixels(region.translated(origin.topLeft()), *screen) : region, ratio));
    });
    connect(&m_region, &RegionSelectionWindow::cancelled, this, &X11ScreenPicker::cancel);
}

X11ScreenPicker::~X11ScreenPicker() = default;

void X11ScreenPicker::addObserver(ScreenContentPickerObserver* observer) {
    m_observers.append(observer);
}

void X11ScreenPicker::removeObserver(ScreenContentPickerObserver* observer) {
    m_observers.removeAll(observer);
}

void X11ScreenPicker::setActive(bool active) {
    m_active = active;
    if (!active) {
        closePicker();
    }
}

void X11ScreenPicker::present(bool) {
    xcb_connection_t* connection = x11Connection();
    if (!connection) {
        tell([](ScreenContentPickerObserver& observer) {
            observer.contentPickerStartDidFail(tr("There is no X11 display to record."));
        });
        return;
    }
    QList<ScreenPickerViewModel::Screen> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        screens.append({screen->name(), inPixels(screen->geometry(), *screen)});
    }
    m_choices.setChoices(std::move(screens), X11TopLevelWindows::list(connection));
    if (!m_view) {
        m_view = std::make_unique<QQuickView>();
        PopoverWindow::configureEngine(*m_view->engine());
        m_view->setTitle(tr("Choose What to Record"));
        m_view->setFlags(Qt::Dialog | Qt::WindowStaysOnTopHint);
        m_view->setResizeMode(QQuickView::SizeRootObjectToView);
        m_view->resize(420, 460);
        m_view->setInitialProperties({{QStringLiteral("picker"), QVariant::fromValue(&m_choices)}});
        m_view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/NorvaneBar/recording/qml/ScreenPickerView.qml")));
        PopoverWindow::takeApplicationPalette(*m_view);
        m_view->installEventFilter(this);
    }
    if (const QScreen* primary = QGuiApplication::primaryScreen()) {
        const QRect free = primary->availableGeometry();
        m_view->setPosition(free.center() - QPoint(m_view->width() / 2, m_view->height() / 2));
    }
    m_view->show();
    m_view->raise();
    m_view->requestActivate();
}

bool X11ScreenPicker::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_view.get() && event->type() == QEvent::Close) {
        cancel();
    }
    return QObject::eventFilter(watched, event);
}

void X11ScreenPicker::select(const CaptureTarget& target) {
    closePicker();
    tell([&target](ScreenContentPickerObserver& observer) { observer.contentPickerDidSelect(target); });
}

void X11ScreenPicker::cancel() {
    closePicker();
    tell([](ScreenContentPickerObserver& observer) { observer.contentPickerDidCancel(); });
}

void X11ScreenPicker::tell(const std::function<void(ScreenContentPickerObserver&)>& message) {
    for (ScreenContentPickerObserver* observer : QList(m_observers)) {
        message(*observer);
    }
}

void X11ScreenPicker::closePicker() {
    if (m_view) {
        m_view->hide();
    }
}
