#include "core/app/ServiceAddresses.h"
#include "support/TestMain.h"

#include <QTest>

// Where the service's pages are on the web.
class ServiceAddressesTest : public QObject {
    Q_OBJECT

private slots:
    void aListsPageIsTheWorkspaceAndTheListBelowTheWebBase() {
        ServiceAddresses addresses;
        addresses.webBaseURL = QUrl(QStringLiteral("https://app.norvane.com"));
        QCOMPARE(addresses.listURL(QStringLiteral("9015"), QStringLiteral("9015001")),
                 QStringLiteral("https://app.norvane.com/9015/v/l/li/9015001"));
    }

    void aWebBaseWithAPathKeepsIt() {
        ServiceAddresses addresses;
        addresses.webBaseURL = QUrl(QStringLiteral("http://127.0.0.1:8080/web/"));
        QCOMPARE(addresses.listURL(QStringLiteral("w"), QStringLiteral("l")),
                 QStringLiteral("http://127.0.0.1:8080/web/w/v/l/li/l"));
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ServiceAddressesTest)
#include "ServiceAddressesTest.moc"
