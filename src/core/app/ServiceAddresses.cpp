#include "app/ServiceAddresses.h"

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
