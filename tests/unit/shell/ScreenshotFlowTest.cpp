#include "core/compose/AttachmentStaging.h"
#include "support/AppStateFixture.h"
#include "support/ScreenshotTesting.h"
#include "support/ScriptedRegionTool.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QBuffer>
#include <QImage>
#include <QTest>

namespace {
// A 40 × 30 picture as PNG, red.
QByteArray pngPicture() {
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}
} // namespace

// A screenshot taken from the tray as a new task, on the central state as the app builds it, with
// a scripted capture tool and real files in a temporary folder of each test's own.
class ScreenshotFlowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TemporaryFolderOverride> m_temporary;
    ScriptedRegionTool m_tool;
    std::unique_ptr<AppStateFixture> m_fixture;

    // A draft the user was writing, on the Tasks tab, with a file attached and a reminder lead of 5.
    AppState& startWithAWrittenDraft() {
        m_fixture->useRegionCaptureTool(m_tool);
        AppState& app = m_fixture->start();
        app.settings().modify([](AppSettings& changed) { changed.defaultReminderLeadMinutes = 30; });
        app.draft().setName(QStringLiteral("Half written"));
        app.draft().setReminderLeadMinutes(5);
        app.draft().setAttachments({*AttachmentStaging::stage(
            QUrl::fromLocalFile(m_temporary->writeOutside(QStringLiteral("notes.txt"), QByteArray("notes"))))});
        app.setActiveTab(PopoverTab::myDay);
        return app;
    }

    // The file the tool wrote is gone.
    bool shotRemoved() const { return !m_tool.paths.isEmpty() && !QFileInfo::exists(m_tool.paths.constLast()); }

    // The draft and tab as startWithAWrittenDraft() left them.
    static bool untouched(AppState& app) {
        return app.draft().name() == QStringLiteral("Half written") && app.draft().attachments().size() == 1 &&
               app.draft().attachments().constFirst().filename == QStringLiteral("notes.txt") &&
               app.activeTab() == PopoverTab::myDay;
    }

private slots:
    void init() {
        m_temporary = std::make_unique<TemporaryFolderOverride>();
        m_tool = ScriptedRegionTool();
        m_fixture = std::make_unique<AppStateFixture>();
    }

    void cleanup() {
        m_fixture.reset();
        m_temporary.reset();
    }

    void theScreenshotIsTheOnlyAttachmentOfANewDraftOnTheCreateTab() {
        m_tool.written = pngPicture();
        AppState& app = startWithAWrittenDraft();
        QVERIFY(runTask(app.startScreenshotCapture()));
        QCOMPARE(app.draft().name(), QString());
        QCOMPARE(app.draft().reminderLeadMinutes(), qint64(30));
        QCOMPARE(app.draft().attachments().size(), 1);
        const StagedAttachment& staged = app.draft().attachments().constFirst();
        QVERIFY(staged.isImage);
        QVERIFY(staged.filename.startsWith(QStringLiteral("Pasted image ")));
        QCOMPARE(QImage(staged.fileURL.toLocalFile()).size(), QSize(40, 30));
        QCOMPARE(QImage(staged.fileURL.toLocalFile()).pixelColor(5, 5), QColor(Qt::red));
        QCOMPARE(app.activeTab(), PopoverTab::compose);
        QVERIFY(shotRemoved());
    }

    void theScreenshotTemplateIsAppliedAndTheScreenshotStaysTheOnlyAttachment() {
        m_tool.written = pngPicture();
        AppState& app = startWithAWrittenDraft();
        chooseScreenshotTemplate(app);
        QVERIFY(runTask(app.startScreenshotCapture()));
        QVERIFY(screenshotTemplateApplied(app));
        QCOMPARE(app.draft().attachments().size(), 1);
        QVERIFY(app.draft().attachments().constFirst().isImage);
        QCOMPARE(app.activeTab(), PopoverTab::compose);
        QVERIFY(shotRemoved());
    }

    void aTemplateChoiceThatNamesNoTemplateAppliesNone() {
        m_tool.written = pngPicture();
        AppState& app = startWithAWrittenDraft();
        app.settings().modify([](AppSettings& changed) { changed.screenshotTemplateID = QUuid::createUuid(); });
        QVERIFY(runTask(app.startScreenshotCapture()));
        QCOMPARE(app.draft().name(), QString());
        QCOMPARE(app.draft().attachments().size(), 1);
    }

    void pressingEscapeInTheToolLeavesDraftAndPopoverAsTheyWere() {
        AppState& app = startWithAWrittenDraft(); // the tool runs and writes nothing
        chooseScreenshotTemplate(app);
        QVERIFY(!runTask(app.startScreenshotCapture()));
        QVERIFY(untouched(app));
        QCOMPARE(app.draft().reminderLeadMinutes(), qint64(5));
        QVERIFY(shotRemoved());
    }

    void aZeroByteScreenshotChangesNothing() {
        m_tool.written = QByteArray();
        AppState& app = startWithAWrittenDraft();
        QVERIFY(!runTask(app.startScreenshotCapture()));
        QVERIFY(untouched(app));
        QVERIFY(shotRemoved());
    }

    void aFileThatIsNoPictureChangesNothingAndIsRemoved() {
        m_tool.written = QByteArray("not a picture");
        AppState& app = startWithAWrittenDraft();
        QVERIFY(!runTask(app.startScreenshotCapture()));
        QVERIFY(untouched(app));
        QVERIFY(shotRemoved());
    }

    void withoutACaptureToolNothingChanges() {
        AppState& app = m_fixture->start();
        app.draft().setName(QStringLiteral("Kept"));
        QVERIFY(!runTask(app.startScreenshotCapture()));
        QCOMPARE(app.draft().name(), QStringLiteral("Kept"));
        QVERIFY(m_temporary->fileNames().isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ScreenshotFlowTest)
#include "ScreenshotFlowTest.moc"
