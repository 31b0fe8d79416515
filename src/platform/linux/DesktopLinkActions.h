#pragma once

#include "core/platform/LinkActions.h"

// Opens links in the desktop's default browser and copies text to the clipboard as plain text.
// Needs the QGuiApplication to exist when called.
class DesktopLinkActions : public LinkActions {
public:
    void openURL(const QUrl& url) override;
    void copyText(const QString& text) override;
};
