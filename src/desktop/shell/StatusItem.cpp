#include "desktop/shell/StatusItem.h"

#include "core/shell/StatusItemIcon.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <algorithm>
#include <array>
#include <cmath>

namespace {
// The icon sides drawn, in pixels: the design's own, the usual panel size, and both doubled.
constexpr std::array iconSides{18, 22, 36, 44};

// Draws `text` into the lower right of `icon` on a pill of the desktop's highlight colour, cut
// out of the design by a thin transparent ring so that it reads on any panel, light or dark. The
// digits are half the icon's height, bold: at 22 px they stand 11 px tall.
QImage withBadge(QImage icon, const QString& text) {
    const qreal side = icon.height();
    QFont font = QGuiApplication::font();
    font.setBold(true);
    font.setPixelSize(qRound(side * 0.5));
    const QFontMetricsF metrics(font);
    const qreal height = std::round(side * 0.6);
    const qreal width = std::min(side, std::max(height, metrics.horizontalAdvance(text) + height * 0.5));
    const QRectF pill(side - width, side - height, width, height);
    const qreal ring = std::max(1.0, side / 18);

    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(pill.adjusted(-ring, -ring, ring, ring), (height + 2 * ring) / 2, (height + 2 * ring) / 2);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const QPalette palette = QGuiApplication::palette();
    painter.setBrush(palette.color(QPalette::Highlight));
    painter.drawRoundedRect(pill, height / 2, height / 2);
    painter.setPen(palette.color(QPalette::HighlightedText));
    painter.setFont(font);
    painter.drawText(pill, Qt::AlignCenter, text);
    return icon;
}
} // namespace

StatusItem::StatusItem(QObject* parent)
    : QObject(parent) {
    connect(m_menu.addAction(tr("New Task")), &QAction::triggered, this, &StatusItem::newTaskRequested);
    connect(m_menu.addAction(tr("Record Screen…")), &QAction::triggered, this, &StatusItem::recordScreenRequested);
    m_quickLinks.setTitle(tr("Quick Links"));
    m_settingsAction = m_menu.addAction(tr("Settings…"));
    m_settingsAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    connect(m_settingsAction, &QAction::triggered, this, &StatusItem::settingsRequested);
    m_menu.addSeparator();
    QAction* quit = m_menu.addAction(tr("Quit NorvaneBar"));
    quit->setShortcut(QKeySequence(QKeySequence::Quit));
    connect(quit, &QAction::triggered, this, &StatusItem::quitRequested);
    connect(&m_menu, &QMenu::aboutToShow, this, &StatusItem::menuAboutToShow);
    // A screen reader announces the menu by this name when it opens.
    m_menu.setAccessibleName(tr("NorvaneBar"));
}

void StatusItem::create() {
    if (m_icon) {
        return;
    }
    m_icon = new QSystemTrayIcon(this);
    m_icon->setContextMenu(&m_menu);
    refreshIcon();
    connect(m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason != QSystemTrayIcon::Trigger) {
            return;
        }
        emit clicked(iconGeometry());
    });
    m_icon->show();
}

void StatusItem::setBadge(const StatusItemBadge& badge) {
    if (badge == m_badge) {
        return;
    }
    m_badge = badge;
    if (m_icon) {
        refreshIcon();
    }
}

void StatusItem::follow(const StatusItemBadgeModel& model) {
    setBadge(model.badge());
    connect(&model, &StatusItemBadgeModel::changed, this, [this, &model] { setBadge(model.badge()); });
}

void StatusItem::setBookmarks(const QList<Bookmark>& bookmarks) {
    if (bookmarks == m_bookmarks) {
        return;
    }
    m_bookmarks = bookmarks;
    m_quickLinks.clear();
    for (const Bookmark& bookmark : bookmarks) {
        // A name is the user's text: "&" stays a character, never a mnemonic.
        QAction* entry = m_quickLinks.addAction(QString(bookmark.name).replace(u'&', QStringLiteral("&&")));
        connect(entry, &QAction::triggered, this, [this, address = bookmark.urlString] {
            const QUrl url(address, QUrl::StrictMode);
            if (url.isValid() && !url.scheme().isEmpty()) {
                emit openURLRequested(url);
            }
        });
    }
    if (bookmarks.isEmpty()) {
        m_menu.removeAction(m_quickLinks.menuAction());
    } else if (!m_menu.actions().contains(m_quickLinks.menuAction())) {
        m_menu.insertMenu(m_settingsAction, &m_quickLinks);
    }
}

std::optional<QRect> StatusItem::iconGeometry() const {
    const QRect geometry = m_icon ? m_icon->geometry() : QRect();
    return geometry.isValid() ? std::optional(geometry) : std::nullopt;
}

void StatusItem::showMenu(QPoint at) {
    m_menu.popup(at);
}

void StatusItem::refreshIcon() {
    // The design is a template image; on Linux it takes the desktop's text colour.
    const QColor ink = QGuiApplication::palette().color(QPalette::WindowText);
    QIcon icon;
    for (const int side : iconSides) {
        QImage image = StatusItemIcon::make(ink, side / qreal(StatusItemIcon::pointSize));
        if (!m_badge.text.isEmpty()) {
            image = withBadge(std::move(image), m_badge.text);
        }
        icon.addPixmap(QPixmap::fromImage(image));
    }
    m_icon->setIcon(icon);
    m_icon->setToolTip(m_badge.toolTip);
}
