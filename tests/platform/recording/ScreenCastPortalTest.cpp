#include "platform/linux/ScreenCastPortal.h"
#include "platform/linux/GStreamerScreenCapture.h"
#include "support/CaptureTesting.h"
#include "support/DBusServiceProcess.h"
#include "support/FakePipeWireScreen.h"
#include "support/TestMain.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QTemporaryDir>
#include <QTest>

namespace {
const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString testInterface = QStringLiteral("org.norvanebar.Test.ScreenCast");

// What the picker told.
struct Choices : ScreenContentPickerObserver {
    QList<CaptureTarget> selected;
    int cancelled = 0;
    QStringList failures;

    void contentPickerDidSelect(const CaptureTarget& target) override { selected.append(target); }
    void contentPickerDidCancel() override { ++cancelled; }
    void contentPickerStartDidFail(const QString& description) override { failures.append(description); }
    int answers() const { return int(selected.size()) + cancelled + int(failures.size()); }
};

struct Call {
    QString method;
    QVariantMap options;
};

bool isGreen(QRgb colour) {
    return qGreen(colour) > 150 && qRed(colour) < 60 && qBlue(colour) < 60;
}
} // namespace

// The ScreenCast portal as the recording's picker, against a portal of the test's own on the
// session bus that shares the fake screen of a private PipeWire (tests/harness/pipewire_screen.py,
// tests/harness/screencast_portal.py): the calls and their options, the remembered choice, the
// person's cancel, the portal's failure, and real frames read from the PipeWire remote it handed out.
class ScreenCastPortalTest : public QObject {
    Q_OBJECT

    FakePipeWireScreen m_screen{QStringLiteral(NORVANEBAR_PIPEWIRE_SCREEN_SCRIPT)};
    std::unique_ptr<DBusServiceProcess> m_portal;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ScreenCastPortal> m_picker;
    Choices m_choices;

    bool startPortal(const QStringList& answer = {}) {
        return m_portal->start(QStringList{QStringLiteral("--node"), QString::number(m_screen.nodeId())} + answer);
    }
    // Presents the picker and waits for its answer.
    bool choose(bool showsCursor = true) {
        const int before = m_choices.answers();
        m_picker->present(showsCursor);
        return QTest::qWaitFor([&] { return m_choices.answers() > before; }, 10'000);
    }
    QList<Call> calls() const {
        QList<Call> noted;
        const QVariantList reply = m_portal->call(portalPath, testInterface, QStringLiteral("Calls"));
        if (reply.isEmpty()) {
            return noted;
        }
        const auto argument = reply.constFirst().value<QDBusArgument>();
        argument.beginArray();
        while (!argument.atEnd()) {
            Call call;
            argument.beginStructure();
            argument >> call.method >> call.options;
            argument.endStructure();
            noted.append(call);
        }
        argument.endArray();
        return noted;
    }
    QVariantMap optionsOf(const QString& method, int which = 0) const {
        QList<Call> of;
        for (const Call& call : calls()) {
            if (call.method == method) {
                of.append(call);
            }
        }
        return which < of.size() ? of[which].options : QVariantMap{{QStringLiteral("missing"), true}};
    }
    QStringList closedSessions() const {
        const QVariantList reply = m_portal->call(portalPath, testInterface, QStringLiteral("ClosedSessions"));
        return reply.isEmpty() ? QStringList() : reply.constFirst().toStringList();
    }

private slots:
    void initTestCase() { QVERIFY2(m_screen.start(), "the fake screen did not come up"); }

    void cleanupTestCase() { QVERIFY(m_screen.stop()); }

    void init() {
        m_portal =
            std::make_unique<DBusServiceProcess>(QStringLiteral(NORVANEBAR_SCREENCAST_PORTAL_SCRIPT), portalName);
        m_folder = std::make_unique<QTemporaryDir>();
        m_picker = std::make_unique<ScreenCastPortal>(m_folder->filePath(QStringLiteral("screencast/restore-token")));
        m_choices = Choices();
        m_picker->addObserver(&m_choices);
        m_picker->setActive(true);
    }

    void cleanup() {
        m_picker.reset();
        QVERIFY(m_portal->stop());
        m_portal.reset();
    }

    void theChosenScreenIsRecordedFromThePortalsPipeWire() {
        QVERIFY(startPortal());
        QVERIFY(choose());
        QCOMPARE(m_choices.selected.size(), 1);
        const CaptureTarget& target = m_choices.selected.first();
        QCOMPARE(target.contentRect, QRectF(0, 0, 1280, 720));
        const auto* node = std::get_if<CaptureTarget::PipeWireNode>(&target.surface);
        QVERIFY(node);
        QCOMPARE(node->nodeId, m_screen.nodeId());
        QVERIFY(node->fd >= 0);

        QStringList methods;
        for (const Call& call : calls()) {
            methods.append(call.method);
        }
        QCOMPARE(methods, (QStringList{QStringLiteral("CreateSession"), QStringLiteral("SelectSources"),
                                       QStringLiteral("Start"), QStringLiteral("OpenPipeWireRemote")}));
        const QVariantMap sources = optionsOf(QStringLiteral("SelectSources"));
        QCOMPARE(sources.value(QStringLiteral("types")).toUInt(), 3u);
        QCOMPARE(sources.value(QStringLiteral("multiple")).toBool(), false);
        QCOMPARE(sources.value(QStringLiteral("cursor_mode")).toUInt(), 2u);
        QCOMPARE(sources.value(QStringLiteral("persist_mode")).toUInt(), 2u);
        QVERIFY(!sources.contains(QStringLiteral("restore_token")));
        QVERIFY(optionsOf(QStringLiteral("CreateSession")).contains(QStringLiteral("session_handle_token")));

        GStreamerScreenCapture capture(GStreamerScreenCapture::Screens::pipeWire);
        CaptureConfiguration configuration;
        configuration.size = QSize(320, 180);
        const std::unique_ptr<CaptureStream> stream = capture.makeStream(target, configuration);
        CaptureLog log(*stream);
        QVERIFY(log.capture(3));
        QCOMPARE(log.frames().back().size, QSize(320, 180));
        QVERIFY(isGreen(log.frames().back().centre));
    }

    void thePointerIsLeftOutWhenNotShown() {
        QVERIFY(startPortal());
        QVERIFY(choose(false));
        QCOMPARE(optionsOf(QStringLiteral("SelectSources")).value(QStringLiteral("cursor_mode")).toUInt(), 1u);
    }

    void theChosenScreenIsOfferedAgainUntilForgotten() {
        QVERIFY(startPortal());
        QVERIFY(!m_picker->remembersChoice());
        QVERIFY(choose());
        QVERIFY(m_picker->remembersChoice());
        QVERIFY(choose());
        QCOMPARE(optionsOf(QStringLiteral("SelectSources"), 1).value(QStringLiteral("restore_token")).toString(),
                 QStringLiteral("restore-1"));
        // The second choice ended the first one's session.
        QCOMPARE(closedSessions().size(), 1);

        m_picker->forgetChoice();
        QVERIFY(!m_picker->remembersChoice());
        QVERIFY(choose());
        QVERIFY(!optionsOf(QStringLiteral("SelectSources"), 2).contains(QStringLiteral("restore_token")));
        QCOMPARE(m_choices.selected.size(), 3);
    }

    void anInactivePickerEndsItsSession() {
        QVERIFY(startPortal());
        QVERIFY(choose());
        QVERIFY(closedSessions().isEmpty());
        m_picker->setActive(false);
        QVERIFY(!m_picker->isActive());
        QVERIFY(QTest::qWaitFor([this] { return closedSessions().size() == 1; }, 5000));
    }

    void thePersonsCancelReachesTheObservers() {
        QVERIFY(startPortal({QStringLiteral("--cancel")}));
        QVERIFY(choose());
        QCOMPARE(m_choices.cancelled, 1);
        QVERIFY(m_choices.selected.isEmpty());
        QVERIFY(m_choices.failures.isEmpty());
        QVERIFY(QTest::qWaitFor([this] { return closedSessions().size() == 1; }, 5000));
    }

    void aPortalThatEndsTheRequestIsAFailure() {
        QVERIFY(startPortal({QStringLiteral("--fail")}));
        QVERIFY(choose());
        QCOMPARE(m_choices.failures, QStringList{QStringLiteral("The desktop ended the screen sharing.")});
        QCOMPARE(m_choices.cancelled, 0);
    }

    void withoutAPortalThePickerFails() {
        QVERIFY(choose());
        QCOMPARE(m_choices.failures,
                 QStringList{QStringLiteral("The desktop's screen sharing portal did not answer.")});
    }

    void aRemovedObserverIsNotTold() {
        QVERIFY(startPortal());
        Choices other;
        m_picker->addObserver(&other);
        m_picker->removeObserver(&m_choices);
        m_picker->present(true);
        QVERIFY(QTest::qWaitFor([&] { return other.answers() == 1; }, 10'000));
        QCOMPARE(m_choices.answers(), 0);
        m_picker->removeObserver(&other);
    }
};

NORVANEBAR_TEST_MAIN(ScreenCastPortalTest)
#include "ScreenCastPortalTest.moc"
