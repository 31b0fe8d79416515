#include "support/SandboxBrowser.h"

#include <QNetworkReply>

void SandboxBrowser::openURL(const QUrl& url) {
    m_opened.append(url);
    QNetworkRequest request(url);
    // The page answers with a redirect to the program's own scheme, which only the desktop follows.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply* reply = m_network.get(request);
    QObject::connect(reply, &QNetworkReply::finished, reply, [this, reply] {
        reply->deleteLater();
        const QUrl callback = QUrl::fromEncoded(reply->rawHeader(QByteArrayLiteral("Location")));
        if (callback.isValid() && !callback.isEmpty()) {
            m_callbacks.append(callback);
            m_answer(callback);
        }
    });
}
