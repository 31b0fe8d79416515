#include "core/shell/InstanceMessage.h"
#include "support/TestMain.h"

#include <QTest>

class InstanceMessageTest : public QObject {
    Q_OBJECT

private slots:
    void toggleRoundTrips() {
        const QByteArray bytes = InstanceMessages::encode(InstanceMessage::togglePopover());
        QCOMPARE(bytes, QByteArray("toggle-popover\n"));
        QCOMPARE(InstanceMessages::decode(bytes), std::optional(InstanceMessage::togglePopover()));
    }

    void acceptsTheWordWithoutNewline() {
        QCOMPARE(InstanceMessages::decode("toggle-popover"), std::optional(InstanceMessage::togglePopover()));
    }

    void aSignInCallbackRoundTrips() {
        const QUrl callback(QStringLiteral("com.norvanebar.app:/oauth/google?state=S-1&code=4/a%2Bb"));
        const QByteArray bytes = InstanceMessages::encode(InstanceMessage::callback(callback));
        QCOMPARE(bytes, QByteArray("callback com.norvanebar.app:/oauth/google?state=S-1&code=4/a%2Bb\n"));
        QCOMPARE(InstanceMessages::decode(bytes), std::optional(InstanceMessage::callback(callback)));
    }

    void aLaunchWithACallbackAddressHandsItOverAndAnyOtherToggles_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<InstanceMessage>("message");
        const QString callback = QStringLiteral("com.norvanebar.app:/oauth/google?code=c&state=s");
        QTest::newRow("callback") << QStringList{callback} << InstanceMessage::callback(QUrl(callback));
        QTest::newRow("scheme in capitals")
            << QStringList{QStringLiteral("COM.NORVANEBAR.APP:/oauth/google?code=c")}
            << InstanceMessage::callback(QUrl(QStringLiteral("com.norvanebar.app:/oauth/google?code=c")));
        QTest::newRow("no arguments") << QStringList() << InstanceMessage::togglePopover();
        QTest::newRow("a web address") << QStringList{QStringLiteral("https://example.com/?code=c")}
                                       << InstanceMessage::togglePopover();
        QTest::newRow("a file") << QStringList{QStringLiteral("/tmp/a.png")} << InstanceMessage::togglePopover();
    }
    void aLaunchWithACallbackAddressHandsItOverAndAnyOtherToggles() {
        QFETCH(QStringList, arguments);
        QFETCH(InstanceMessage, message);
        QCOMPARE(InstanceMessages::fromArguments(arguments), message);
    }

    void rejectsAnythingElse_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("unknown") << QByteArray("quit\n");
        QTest::newRow("two messages") << QByteArray("toggle-popover\ntoggle-popover\n");
        QTest::newRow("case") << QByteArray("Toggle-Popover\n");
        QTest::newRow("nul") << QByteArray("toggle-popover\0", 15);
        QTest::newRow("callback of another scheme") << QByteArray("callback https://example.com/?code=c\n");
        QTest::newRow("callback without address") << QByteArray("callback \n");
        QTest::newRow("callback not encoded") << QByteArray("callback com.norvanebar.app:/oauth google\n");
        QTest::newRow("oversized") << QByteArray(InstanceMessages::maximumSize + 1, 'x');
    }
    void rejectsAnythingElse() {
        QFETCH(QByteArray, bytes);
        QCOMPARE(InstanceMessages::decode(bytes), std::nullopt);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(InstanceMessageTest)
#include "InstanceMessageTest.moc"
