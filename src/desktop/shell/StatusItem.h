#pragma once

#include "shell/StatusItemBadge.h"

#include <QMenu>
#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>
#include <optional>

// The tray icon and its context menu. Created only once the desktop's tray host is known.
class StatusItem : public QObject {
    Q_OBJECT

public:
    explicit StatusItem(QObject* parent = nullptr);

    void create();
    // The number drawn into the icon and the tool tip; kept until the icon exists.
    void setBadge(const StatusItemBadge& badge);

signals:
    // A left click, with the icon's place on screen when the tray tells it.
    void clicked(std::optional<QRect> iconGeometry);
    // The context menu is about to open: after a right click on an XEmbed icon, or when a
    // StatusNotifierItem host asks for it.
    void menuAboutToShow();
    void quitRequested();

private:
    void refreshIcon();

    QMenu m_menu;
    QSystemTrayIcon* m_icon = nullptr;
    StatusItemBadge m_badge = StatusItemBadge::make(0, 0, false);
};
