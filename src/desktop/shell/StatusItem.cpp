#include "shell/StatusItem.h"

#include "shell/StatusItemIcon.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPalette>
#include <QPixmap>

QString StatusItem::toolTip() {
    return tr("NorvaneBar — new Norvane task");
}

StatusItem::StatusItem(QObject* parent)
    : QObject(parent) {
    QAction* quit = m_menu.addAction(tr("Quit NorvaneBar"));
    quit->setShortcut(QKeySequence(QKeySequence::Quit));
    connect(quit, &QAction::triggered, this, &StatusItem::quitRequested);
    connect(&m_menu, &QMenu::aboutToShow, this, &StatusItem::menuAboutToShow);
}

void StatusItem::create() {
    if (m_icon) {
        return;
    }
    m_icon = new QSystemTrayIcon(this);
    m_icon->setContextMenu(&m_menu);
    m_icon->setToolTip(toolTip());
    refreshIcon();
    connect(m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason != QSystemTrayIcon::Trigger) {
            return;
        }
        const QRect geometry = m_icon->geometry();
        emit clicked(geometry.isValid() ? std::optional(geometry) : std::nullopt);
    });
    m_icon->show();
}

void StatusItem::refreshIcon() {
    // The design is a template image; on Linux it takes the desktop's text colour.
    const QColor ink = QGuiApplication::palette().color(QPalette::WindowText);
    QIcon icon;
    for (const qreal scale : {1.0, 2.0}) {
        icon.addPixmap(QPixmap::fromImage(StatusItemIcon::make(ink, scale)));
    }
    m_icon->setIcon(icon);
}
