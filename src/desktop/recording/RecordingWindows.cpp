#include "desktop/recording/RecordingWindows.h"

#include "desktop/shell/PopoverWindow.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>

RecordingWindows::RecordingWindows(Clock clock, QObject* parent)
    : QObject(parent)
    , m_review(std::move(clock)) {}

RecordingWindows::~RecordingWindows() = default;

void RecordingWindows::follow(ScreenRecordingCoordinator& coordinator) {
    m_controls = std::make_unique<RecordingControlsViewModel>(coordinator);
}

std::unique_ptr<QQuickView> RecordingWindows::makeView(const QString& page, const QVariantMap& properties) {
    if (!m_engine) {
        m_engine = std::make_unique<QQmlEngine>();
        PopoverWindow::configureEngine(*m_engine);
    }
    auto view = std::make_unique<QQuickView>(m_engine.get(), nullptr);
    view->setInitialProperties(properties);
    view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/NorvaneBar/recording/qml/%1.qml").arg(page)));
    PopoverWindow::takeApplicationPalette(*view);
    return view;
}

void RecordingWindows::showCountdown(RecordingCountdown& countdown) {
    if (!m_countdown) {
        m_countdown = std::make_unique<CountdownWindow>();
    }
    m_countdown->present(countdown);
}

void RecordingWindows::closeCountdown() {
    if (m_countdown) {
        m_countdown->hide();
    }
}

void RecordingWindows::showControls() {
    if (!m_controlsView) {
        m_controlsView = makeView(QStringLiteral("RecordingControlsView"),
                                  {{QStringLiteral("controls"), QVariant::fromValue(m_controls.get())}});
        m_controlsView->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                 Qt::WindowDoesNotAcceptFocus);
        m_controlsView->setTitle(tr("Recording controls"));
        m_controlsView->setResizeMode(QQuickView::SizeViewToRootObject);
    }
    const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
    const int height = m_controlsView->rootObject() ? int(m_controlsView->rootObject()->height()) : 0;
    m_controlsView->setGeometry(free.x() + (free.width() - controlsWidth) / 2, free.y() + controlsTopMargin,
                                controlsWidth, std::max(height, 1));
    m_controlsView->show();
    m_controlsView->raise();
}

void RecordingWindows::hideControls() {
    if (m_controlsView) {
        m_controlsView->hide();
    }
}

void RecordingWindows::showFacecamPreview(FacecamOverlay& facecam, const FacecamStyle& style) {
    if (!m_facecamPreview) {
        m_facecamPreview = std::make_unique<FacecamPreviewWindow>();
    }
    m_facecamPreview->present(facecam, style);
}

void RecordingWindows::dismissFacecamPreview() {
    if (m_facecamPreview) {
        m_facecamPreview->dismiss();
    }
}

void RecordingWindows::showReview(const PendingRecordingPreview& preview, std::function<void()> onAttach,
                                  std::function<void()> onReRecord, std::function<void()> onDiscard) {
    m_review.show(preview, std::move(onAttach), std::move(onReRecord), std::move(onDiscard));
    if (!m_reviewView) {
        m_reviewView = makeView(QStringLiteral("RecordingReviewView"),
                                {{QStringLiteral("review"), QVariant::fromValue(&m_review)}});
        m_reviewView->setFlags(Qt::Dialog | Qt::WindowStaysOnTopHint);
        m_reviewView->setTitle(tr("Review Recording"));
        m_reviewView->setResizeMode(QQuickView::SizeRootObjectToView);
        m_reviewView->resize(640, 480);
        const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
        m_reviewView->setPosition(free.center() - QPoint(m_reviewView->width() / 2, m_reviewView->height() / 2));
        // Closed by its title bar, the movie is discarded.
        m_reviewView->installEventFilter(this);
    }
    m_reviewView->show();
    m_reviewView->raise();
    m_reviewView->requestActivate();
}

bool RecordingWindows::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_reviewView.get() && event->type() == QEvent::Close) {
        m_review.discard();
    }
    return QObject::eventFilter(watched, event);
}

void RecordingWindows::dismissReview() {
    m_review.clear();
    if (m_reviewView) {
        m_reviewView->hide();
    }
}
