#include "core/recording/ScreenshotCapture.h"
#include "support/RunTask.h"
#include "support/ScriptedRegionTool.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

// What a screenshot gives for each way the capture tool can end; the tool is scripted, the files
// are real, in a temporary folder of each test's own.
class ScreenshotCaptureTest : public QObject {
    Q_OBJECT

private slots:
    void thePictureTheToolWroteIsGivenInANewShotFileOfTheTemporaryFolder() {
        TemporaryFolderOverride temporary;
        ScriptedRegionTool tool;
        tool.written = QByteArray("picture");
        ScreenshotCapture capture(&tool);
        const std::optional<QUrl> shot = runTask(capture.capture());
        QVERIFY(shot);
        QCOMPARE(tool.paths.size(), 1);
        QCOMPARE(shot->toLocalFile(), tool.paths.constFirst());
        const QFileInfo file(shot->toLocalFile());
        QCOMPARE(file.absolutePath(), QFileInfo(QDir::tempPath()).absoluteFilePath());
        static const QRegularExpression name(
            QStringLiteral("^norvanebar-shot-[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}\\.png$"));
        QVERIFY2(name.match(file.fileName()).hasMatch(), qPrintable(file.fileName()));
        QCOMPARE(fileContents(file.filePath()), QByteArray("picture"));
    }

    void eachCaptureWritesAFileOfItsOwn() {
        TemporaryFolderOverride temporary;
        ScriptedRegionTool tool;
        tool.written = QByteArray("picture");
        ScreenshotCapture capture(&tool);
        const std::optional<QUrl> first = runTask(capture.capture());
        const std::optional<QUrl> second = runTask(capture.capture());
        QVERIFY(first && second);
        QVERIFY(*first != *second);
        QCOMPARE(temporary.fileNames().size(), 2);
    }

    void escapeInTheToolGivesAbsentAndLeavesNoFile() {
        TemporaryFolderOverride temporary;
        ScriptedRegionTool tool; // ran, wrote nothing
        ScreenshotCapture capture(&tool);
        QCOMPARE(runTask(capture.capture()), std::nullopt);
        QCOMPARE(tool.paths.size(), 1);
        QVERIFY(temporary.fileNames().isEmpty());
    }

    void aZeroByteFileIsDeletedAndGivesAbsent() {
        TemporaryFolderOverride temporary;
        ScriptedRegionTool tool;
        tool.written = QByteArray();
        ScreenshotCapture capture(&tool);
        QCOMPARE(runTask(capture.capture()), std::nullopt);
        QVERIFY(!QFileInfo::exists(tool.paths.constFirst()));
        QVERIFY(temporary.fileNames().isEmpty());
    }

    void aToolThatCouldNotRunGivesAbsentAndWhatItLeftIsRemoved() {
        TemporaryFolderOverride temporary;
        ScriptedRegionTool tool;
        tool.ran = false;
        tool.written = QByteArray("half a picture");
        ScreenshotCapture capture(&tool);
        QCOMPARE(runTask(capture.capture()), std::nullopt);
        QVERIFY(temporary.fileNames().isEmpty());
    }

    void anAttemptWithTheToolMissingGivesAbsent() {
        TemporaryFolderOverride temporary;
        ScreenshotCapture capture(nullptr);
        QCOMPARE(runTask(capture.capture()), std::nullopt);
        QVERIFY(temporary.fileNames().isEmpty());
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ScreenshotCaptureTest)
#include "ScreenshotCaptureTest.moc"
