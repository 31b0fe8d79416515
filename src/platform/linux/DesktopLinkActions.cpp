#include "platform/linux/DesktopLinkActions.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>

void DesktopLinkActions::openURL(const QUrl& url) {
    QDesktopServices::openUrl(url);
}

void DesktopLinkActions::copyText(const QString& text) {
    // setText replaces whatever the clipboard held with this text alone.
    QGuiApplication::clipboard()->setText(text);
}
