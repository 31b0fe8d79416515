#pragma once

#include "core/platform/LinkActions.h"

#include <QList>
#include <QNetworkAccessManager>
#include <QUrl>
#include <functional>

// Stands in for the default browser in sign-in tests: it opens the sign-in page, here the sandbox's
// stand-in of Google's, as a person who agrees, and gives the address that page sends it on to (the
// program's callback) to `answer`, as the desktop hands it to the running program. Other addresses
// are only recorded.
class SandboxBrowser : public LinkActions {
public:
    using Answer = std::function<void(const QUrl& callback)>;

    explicit SandboxBrowser(Answer answer)
        : m_answer(std::move(answer)) {}

    void openURL(const QUrl& url) override;
    void copyText(const QString&) override {}

    const QList<QUrl>& opened() const { return m_opened; }
    // The callbacks handed on, in order.
    const QList<QUrl>& callbacks() const { return m_callbacks; }

private:
    Answer m_answer;
    QNetworkAccessManager m_network;
    QList<QUrl> m_opened;
    QList<QUrl> m_callbacks;
};
