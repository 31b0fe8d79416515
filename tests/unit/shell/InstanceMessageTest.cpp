#include "core/shell/InstanceMessage.h"
#include "support/TestMain.h"

#include <QTest>

class InstanceMessageTest : public QObject {
    Q_OBJECT

private slots:
    void toggleRoundTrips() {
        const QByteArray bytes = InstanceMessages::encode(InstanceMessage::togglePopover);
        QCOMPARE(bytes, QByteArray("toggle-popover\n"));
        QCOMPARE(InstanceMessages::decode(bytes), std::optional(InstanceMessage::togglePopover));
    }

    void acceptsTheWordWithoutNewline() {
        QCOMPARE(InstanceMessages::decode("toggle-popover"), std::optional(InstanceMessage::togglePopover));
    }

    void rejectsAnythingElse_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("unknown") << QByteArray("quit\n");
        QTest::newRow("two messages") << QByteArray("toggle-popover\ntoggle-popover\n");
        QTest::newRow("case") << QByteArray("Toggle-Popover\n");
        QTest::newRow("nul") << QByteArray("toggle-popover\0", 15);
        QTest::newRow("oversized") << QByteArray(InstanceMessages::maximumSize + 1, 'x');
    }
    void rejectsAnythingElse() {
        QFETCH(QByteArray, bytes);
        QCOMPARE(InstanceMessages::decode(bytes), std::nullopt);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(InstanceMessageTest)
#include "InstanceMessageTest.moc"
