#include "core/app/ServiceAddresses.h"

ServiceAddresses ServiceAddresses::builtIn() {
    return {QUrl(QStringLiteral(NORVANEBAR_API_BASE_URL)), QUrl(QStringLiteral(NORVANEBAR_WEB_BASE_URL))};
}

ServiceAddresses ServiceAddresses::from(const AppSettings& settings) {
    ServiceAddresses addresses = builtIn();
    if (settings.serviceAPIBaseURL) {
        addresses.apiBaseURL = QUrl(*settings.serviceAPIBaseURL);
    }
    if (settings.serviceWebBaseURL) {
        addresses.webBaseURL = QUrl(*settings.serviceWebBaseURL);
    }
    return addresses;
}

QString ServiceAddresses::listURL(const QString& workspaceID, const QString& listID) const {
    QUrl address = webBaseURL;
    QString path = address.path();
    if (!path.endsWith(u'/')) {
        path += u'/';
    }
    address.setPath(path + workspaceID + QStringLiteral("/v/l/li/") + listID);
    return address.toString();
}
