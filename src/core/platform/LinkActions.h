#pragma once

#include <QString>
#include <QUrl>

// What the program does with a task's address besides showing it: open it in the default browser,
// or put it on the clipboard as plain text. The desktop gives the real ones; tests record the calls.
class LinkActions {
public:
    virtual ~LinkActions() = default;

    virtual void openURL(const QUrl& url) = 0;
    virtual void copyText(const QString& text) = 0;
};
