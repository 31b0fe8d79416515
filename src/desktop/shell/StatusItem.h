#pragma once

#include "core/settings/Bookmark.h"
#include "core/shell/StatusItemBadge.h"
#include "core/shell/StatusItemBadgeModel.h"

#include <QMenu>
#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>
#include <QUrl>
#include <optional>

// The tray icon and its context menu: "New Task", "Record Screen…", the quick links, "Settings…" and "Quit NorvaneBar".
// Created only once the desktop's tray host is known.
class StatusItem : public QObject {
    Q_OBJECT

public:
    explicit StatusItem(QObject* parent = nullptr);

    void create();
    // The number drawn into the icon and the tool tip; kept until the icon exists.
    void setBadge(const StatusItemBadge& badge);
    // Shows the model's badge now and after each of its changes; the model must outlive the item.
    void follow(const StatusItemBadgeModel& model);
    // The entries of the "Quick Links" submenu, in this order; without any, the submenu is absent.
    void setBookmarks(const QList<Bookmark>& bookmarks);
    // Opens the context menu with its top left corner at `at`, for the keyboard.
    void showMenu(QPoint at);
    // Where the icon is on screen, when the tray tells it.
    std::optional<QRect> iconGeometry() const;

signals:
    // A left click, with the icon's place on screen when the tray tells it.
    void clicked(std::optional<QRect> iconGeometry);
    // The context menu is about to open: after a right click on an XEmbed icon, or when a
    // StatusNotifierItem host asks for it.
    void menuAboutToShow();
    void newTaskRequested();
    void recordScreenRequested();
    // A quick link was chosen whose address makes a URL; one that doesn't does nothing.
    void openURLRequested(const QUrl& url);
    void settingsRequested();
    void quitRequested();

private:
    void refreshIcon();

    QMenu m_menu;
    QMenu m_quickLinks;
    QAction* m_settingsAction = nullptr;
    QList<Bookmark> m_bookmarks;
    QSystemTrayIcon* m_icon = nullptr;
    StatusItemBadge m_badge = StatusItemBadge::make(0, 0, false);
};
