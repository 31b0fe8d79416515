#include "core/recording/ScreenshotCapture.h"
#include "platform/linux/DesktopRegionCaptureTool.h"
#include "support/AppStateFixture.h"
#include "support/ScreenshotTesting.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTest>

namespace {
const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");

QDBusConnectionInterface* bus() {
    return QDBusConnection::sessionBus().interface();
}
} // namespace

// Region screenshots on the desktop of a session of their own (Xvfb, a private bus without a
// portal until a test starts one): the real maim with slop driven by xdotool as a user would, tools
// of the test's own on PATH in place of the others, and a Screenshot portal of the test's own.
class RegionScreenshotTest : public QObject {
    Q_OBJECT

    QByteArray m_path = qgetenv("PATH");
    std::unique_ptr<TemporaryFolderOverride> m_temporary;
    std::unique_ptr<QTemporaryDir> m_tools;
    QProcess m_user;
    QProcess m_portal;
    std::unique_ptr<DesktopRegionCaptureTool> m_tool;
    std::unique_ptr<AppStateFixture> m_fixture;

    // The real program of that name on PATH.
    void linkTool(const QString& name) const {
        if (!QFile::link(QStringLiteral("/usr/bin/") + name, m_tools->filePath(name))) {
            qFatal("Cannot link %s", qPrintable(name));
        }
    }

    // A tool of the test's own: writes its name and each argument, one a line, to "<name>.log" in
    // the tool folder, then runs `body`, where "$last" is its last argument.
    bool fakeTool(const QString& name, const QString& body) const {
        const QString script = QStringLiteral("#!/bin/sh\nprintf '%s\\n' \"${0##*/}\" \"$@\" > '%1'\n"
                                              "for last; do :; done\n%2\n")
                                   .arg(m_tools->filePath(name + QStringLiteral(".log")), body);
        writtenFile(m_tools->filePath(name), script.toUtf8());
        return QFile::setPermissions(m_tools->filePath(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    // What the tool of the test's own was started with: its name, then its arguments; empty when it
    // never ran.
    QStringList toolRun(const QString& name) const {
        const QByteArray log = fileContents(m_tools->filePath(name + QStringLiteral(".log")));
        return QString::fromUtf8(log).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    // The user, waiting for the region selector to hold the pointer, then dragging or cancelling.
    void startUser(const QStringList& arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PATH"), QString::fromLocal8Bit(m_path));
        m_user.setProcessEnvironment(environment);
        m_user.start(QStringLiteral("/usr/bin/python3"),
                     QStringList{QStringLiteral(NORVANEBAR_REGION_DRAG_SCRIPT)} + arguments);
    }

    // The user finished the part and succeeded.
    bool userDone() {
        if (m_user.state() != QProcess::NotRunning && !m_user.waitForFinished(20'000)) {
            return false;
        }
        return m_user.exitStatus() == QProcess::NormalExit && m_user.exitCode() == 0;
    }

    bool startPortal(const QStringList& arguments) {
        m_portal.start(QStringLiteral("/usr/bin/python3"),
                       QStringList{QStringLiteral(NORVANEBAR_SCREENSHOT_PORTAL_SCRIPT)} + arguments);
        return QTest::qWaitFor([] { return bus()->isServiceRegistered(portalService).value(); }, 5000);
    }

    bool stopPortal() {
        if (m_portal.state() != QProcess::NotRunning) {
            m_portal.terminate();
            m_portal.waitForFinished(5000);
        }
        return QTest::qWaitFor([] { return !bus()->isServiceRegistered(portalService).value(); }, 5000);
    }

    // The options of each request the portal was given.
    static QList<QVariantMap> portalRequests() {
        const QDBusMessage call = QDBusMessage::createMethodCall(
            portalService, QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.norvanebar.Test.Screenshot"), QStringLiteral("Requests"));
        const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
        QList<QVariantMap> requests;
        if (reply.type() != QDBusMessage::ReplyMessage) {
            return requests;
        }
        const QDBusArgument array = reply.arguments().constFirst().value<QDBusArgument>();
        array.beginArray();
        while (!array.atEnd()) {
            QVariantMap options;
            array >> options;
            requests.append(options);
        }
        array.endArray();
        return requests;
    }

    static std::optional<QUrl> capture() {
        DesktopRegionCaptureTool tool;
        ScreenshotCapture capture(&tool);
        return runTask(capture.capture());
    }

    // The central state with the real maim as its capture tool, a draft being written on the Tasks
    // tab, and a screenshot template.
    AppState& startWithMaim() {
        linkTool(QStringLiteral("maim"));
        m_tool = std::make_unique<DesktopRegionCaptureTool>();
        m_fixture = std::make_unique<AppStateFixture>();
        m_fixture->useRegionCaptureTool(*m_tool);
        AppState& app = m_fixture->start();
        app.draft().setName(QStringLiteral("Half written"));
        app.setActiveTab(PopoverTab::myDay);
        chooseScreenshotTemplate(app);
        return app;
    }

    // No screenshot file is left in the temporary folder.
    bool noShotLeft() const { return m_temporary->fileNames().filter(QStringLiteral("norvanebar-shot-")).isEmpty(); }

private slots:
    void init() {
        m_temporary = std::make_unique<TemporaryFolderOverride>();
        m_tools = std::make_unique<QTemporaryDir>();
        qputenv("PATH", m_tools->path().toLocal8Bit());
    }

    void cleanup() {
        qputenv("PATH", m_path);
        if (m_user.state() != QProcess::NotRunning) {
            m_user.kill();
            m_user.waitForFinished();
        }
        QVERIFY(stopPortal());
        m_fixture.reset();
        m_tool.reset();
        m_tools.reset();
        m_temporary.reset();
    }

    void aRegionDraggedInMaimBecomesTheOnlyAttachmentWithTheTemplateOnTheCreateTab() {
        AppState& app = startWithMaim();
        startUser({QStringLiteral("100"), QStringLiteral("50"), QStringLiteral("300"), QStringLiteral("150")});
        QVERIFY(runTask(app.startScreenshotCapture()));
        QVERIFY(userDone());
        QVERIFY(screenshotTemplateApplied(app));
        QCOMPARE(app.draft().attachments().size(), 1);
        const StagedAttachment& staged = app.draft().attachments().constFirst();
        QVERIFY(staged.isImage);
        const QImage picture(staged.fileURL.toLocalFile());
        // slop counts both edges of the drag.
        QVERIFY2(picture.width() >= 200 && picture.width() <= 201, qPrintable(QString::number(picture.width())));
        QVERIFY2(picture.height() >= 100 && picture.height() <= 101, qPrintable(QString::number(picture.height())));
        QCOMPARE(app.activeTab(), PopoverTab::compose);
        QVERIFY(noShotLeft());
    }

    void pressingEscapeInMaimLeavesDraftAndPopoverAsTheyWere() {
        AppState& app = startWithMaim();
        startUser({QStringLiteral("--cancel")});
        QVERIFY(!runTask(app.startScreenshotCapture()));
        QVERIFY(userDone());
        QCOMPARE(app.draft().name(), QStringLiteral("Half written"));
        QVERIFY(app.draft().attachments().isEmpty());
        QCOMPARE(app.activeTab(), PopoverTab::myDay);
        QVERIFY(noShotLeft());
    }

    void aZeroByteFileIsDeletedAndGivesAbsent() {
        QVERIFY(fakeTool(QStringLiteral("maim"), QStringLiteral(": > \"$last\"")));
        QCOMPARE(capture(), std::nullopt);
        QCOMPARE(toolRun(QStringLiteral("maim")).size(), 3);
        QVERIFY(m_temporary->fileNames().isEmpty());
    }

    void anAttemptWithTheToolMissingGivesAbsent() {
        QCOMPARE(capture(), std::nullopt);
        QVERIFY(m_temporary->fileNames().isEmpty());
    }

    void theToolsExitStatusIsNotRead() {
        QVERIFY(fakeTool(QStringLiteral("maim"), QStringLiteral("printf picture > \"$last\"\nexit 3")));
        const std::optional<QUrl> shot = capture();
        QVERIFY(shot);
        QCOMPARE(fileContents(shot->toLocalFile()), QByteArray("picture"));
    }

    void theFirstInstalledToolRunsWithItsArgumentsAndTheOutputPath() {
        const QString writes = QStringLiteral("printf picture > \"$last\"");
        for (const QString& name : {QStringLiteral("gnome-screenshot"), QStringLiteral("spectacle"),
                                    QStringLiteral("maim"), QStringLiteral("grim"), QStringLiteral("slurp")}) {
            QVERIFY(fakeTool(name, writes));
        }
        const QList<std::pair<QString, QStringList>> expected{
            {QStringLiteral("gnome-screenshot"), {QStringLiteral("-a"), QStringLiteral("-f")}},
            {QStringLiteral("spectacle"),
             {QStringLiteral("-r"), QStringLiteral("-b"), QStringLiteral("-n"), QStringLiteral("-o")}},
            {QStringLiteral("maim"), {QStringLiteral("-s")}},
        };
        for (const auto& [name, arguments] : expected) {
            const std::optional<QUrl> shot = capture();
            QVERIFY(shot);
            QCOMPARE(toolRun(name), QStringList{name} + arguments + QStringList{shot->toLocalFile()});
            QVERIFY(toolRun(QStringLiteral("grim")).isEmpty());
            // The next one down the list is taken once this one is gone.
            QVERIFY(QFile::remove(m_tools->filePath(name)));
        }
    }

    void grimTakesTheRegionSlurpPrintsAsOneArgument() {
        QVERIFY(fakeTool(QStringLiteral("slurp"), QStringLiteral("echo '10,20 30x40'")));
        QVERIFY(fakeTool(QStringLiteral("grim"), QStringLiteral("printf picture > \"$last\"")));
        const std::optional<QUrl> shot = capture();
        QVERIFY(shot);
        QCOMPARE(toolRun(QStringLiteral("slurp")), QStringList{QStringLiteral("slurp")});
        QCOMPARE(toolRun(QStringLiteral("grim")), (QStringList{QStringLiteral("grim"), QStringLiteral("-g"),
                                                               QStringLiteral("10,20 30x40"), shot->toLocalFile()}));
    }

    void aSelectionCancelledInSlurpStartsNoGrim() {
        QVERIFY(fakeTool(QStringLiteral("slurp"), QStringLiteral("echo 'selection cancelled' >&2\nexit 1")));
        QVERIFY(fakeTool(QStringLiteral("grim"), QStringLiteral("printf picture > \"$last\"")));
        QCOMPARE(capture(), std::nullopt);
        QCOMPARE(toolRun(QStringLiteral("slurp")).size(), 1);
        QVERIFY(toolRun(QStringLiteral("grim")).isEmpty());
        QVERIFY(m_temporary->fileNames().isEmpty());
    }

    void grimWithoutSlurpIsNoTool() {
        QVERIFY(fakeTool(QStringLiteral("grim"), QStringLiteral("printf picture > \"$last\"")));
        QCOMPARE(capture(), std::nullopt);
        QVERIFY(toolRun(QStringLiteral("grim")).isEmpty());
    }

    void thePortalsPictureIsCopiedToTheShotFileAndNoToolRuns() {
        QImage image(30, 20, QImage::Format_RGB32);
        image.fill(Qt::blue);
        const QString picture = m_temporary->writeOutside(QStringLiteral("Screenshot.png"), QByteArray());
        QVERIFY(image.save(picture, "PNG"));
        QVERIFY(fakeTool(QStringLiteral("maim"), QStringLiteral("printf picture > \"$last\"")));
        QVERIFY(startPortal({QStringLiteral("--picture"), picture}));
        const std::optional<QUrl> shot = capture();
        QVERIFY(shot);
        QCOMPARE(fileContents(shot->toLocalFile()), fileContents(picture));
        QVERIFY(QFileInfo::exists(picture));
        QVERIFY(toolRun(QStringLiteral("maim")).isEmpty());
        const QList<QVariantMap> requests = portalRequests();
        QCOMPARE(requests.size(), 1);
        QCOMPARE(requests.constFirst().value(QStringLiteral("interactive")), QVariant(true));
        QVERIFY(!requests.constFirst().value(QStringLiteral("handle_token")).toString().isEmpty());
    }

    void aScreenshotCancelledInThePortalGivesAbsentAndRunsNoTool() {
        QVERIFY(fakeTool(QStringLiteral("maim"), QStringLiteral("printf picture > \"$last\"")));
        QVERIFY(startPortal({QStringLiteral("--cancel")}));
        QCOMPARE(capture(), std::nullopt);
        QCOMPARE(portalRequests().size(), 1);
        QVERIFY(toolRun(QStringLiteral("maim")).isEmpty());
        QVERIFY(m_temporary->fileNames().isEmpty());
    }

    void aPortalThatLeavesBeforeItsAnswerGivesAbsent() {
        QVERIFY(startPortal({QStringLiteral("--silent")}));
        DesktopRegionCaptureTool tool;
        ScreenshotCapture capture(&tool);
        QCoro::Task<std::optional<QUrl>> capturing = capture.capture();
        QTRY_COMPARE(portalRequests().size(), 1);
        QVERIFY(stopPortal());
        QCOMPARE(runTask(std::move(capturing)), std::nullopt);
        QVERIFY(m_temporary->fileNames().isEmpty());
    }
};

NORVANEBAR_TEST_MAIN(RegionScreenshotTest)
#include "RegionScreenshotTest.moc"
