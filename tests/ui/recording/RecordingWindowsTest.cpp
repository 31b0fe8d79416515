#include "desktop/recording/RecordingWindows.h"
#include "support/QuickItems.h"
#include "support/ScriptedRecordingWorkflow.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QProcess>
#include <QRasterWindow>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ScriptedRecording;

namespace {
RecordingConfiguration withMicrophone(bool microphone) {
    RecordingConfiguration chosen;
    chosen.captureMicrophone = microphone;
    return chosen;
}

// A window over the whole screen that counts the clicks it gets.
class ClickTarget : public QRasterWindow {
public:
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++presses; }
};

QObject* item(QQuickView* view, const QString& objectName) {
    return view && view->rootObject() ? view->rootObject()->findChild<QObject*>(objectName) : nullptr;
}

void click(QQuickView* view, const QString& button) {
    QObject* found = item(view, button);
    QVERIFY2(found, qPrintable(button));
    QVERIFY(QMetaObject::invokeMethod(found, "clicked"));
}
} // namespace

// The recording's windows on the test's X display: the countdown, the controls, the review, over a
// coordinator whose engine runs between a scripted capture and writer on the test's own clock.
class RecordingWindowsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TemporaryFolderOverride> m_temporary;
    std::unique_ptr<RecordingWindows> m_windows;
    std::unique_ptr<Workflow> m_workflow;
    std::unique_ptr<RecordingControlsViewModel> m_controls;
    QList<ScreenRecordingCoordinator::Outcome> m_outcomes;
    int m_previewCancels = 0;

    ScreenRecordingCoordinator& coordinator() const { return *m_workflow->coordinator; }

    void record(const RecordingConfiguration& chosen = withMicrophone(true)) {
        coordinator().setConfiguration(chosen);
        coordinator().presentPicker();
        m_workflow->chooseScreenAndCountDown();
    }
    QString movie() const { return m_workflow->rig.writers.writers.last()->path; }

private slots:
    void init() {
        m_temporary = std::make_unique<TemporaryFolderOverride>();
        m_windows = std::make_unique<RecordingWindows>(
            [] { return QDateTime(QDate(2026, 11, 27), QTime(14, 5, 9), Qt::LocalTime).toUTC(); });
        m_workflow = std::make_unique<Workflow>(*m_windows);
        m_windows->follow(coordinator());
        m_controls = std::make_unique<RecordingControlsViewModel>(coordinator());
        m_outcomes.clear();
        m_previewCancels = 0;
        coordinator().completion = [this](ScreenRecordingCoordinator::Outcome outcome) { m_outcomes.append(outcome); };
        coordinator().previewCancelledCompletion = [this](std::optional<ScreenRecordingError>) { ++m_previewCancels; };
    }

    void cleanup() {
        m_controls.reset();
        m_workflow.reset();
        m_windows.reset();
        m_temporary.reset();
    }

    void theCountdownTakesNoClicks() {
        ClickTarget below;
        below.setGeometry(QGuiApplication::primaryScreen()->geometry());
        below.show();
        QVERIFY(QTest::qWaitForWindowExposed(&below));
        coordinator().presentPicker();
        m_workflow->picker.select(CaptureTarget{.contentRect = QRectF(0, 0, 64, 48)});
        CountdownWindow* countdown = m_windows->countdownWindow();
        QVERIFY(countdown);
        QVERIFY(QTest::qWaitForWindowExposed(countdown));
        QCOMPARE(countdown->shownSeconds(), ScreenRecordingCoordinator::countdownSeconds);
        QVERIFY(countdown->flags() & Qt::WindowTransparentForInput);
        QVERIFY(countdown->flags() & Qt::WindowDoesNotAcceptFocus);
        // A click on the number itself, through the X server, lands on the window below.
        const QPoint centre = QGuiApplication::primaryScreen()->geometry().center();
        QCOMPARE(QProcess::execute(QStringLiteral("xdotool"),
                                   {QStringLiteral("mousemove"), QString::number(centre.x()),
                                    QString::number(centre.y()), QStringLiteral("click"), QStringLiteral("1")}),
                 0);
        QTRY_COMPARE(below.presses, 1);
        m_workflow->release(std::chrono::seconds(1));
        QCOMPARE(countdown->shownSeconds(), ScreenRecordingCoordinator::countdownSeconds - 1);
        for (int second = 1; second < ScreenRecordingCoordinator::countdownSeconds; ++second) {
            m_workflow->release(std::chrono::seconds(1));
        }
        QVERIFY(!countdown->isVisible());
        QVERIFY(coordinator().isRecording());
    }

    void theControlsStandAtTheTopOfTheScreenAndStopTheRecording() {
        record();
        QQuickView* controls = m_windows->controlsWindow();
        QVERIFY(controls);
        QVERIFY(QTest::qWaitForWindowExposed(controls));
        const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(controls->width(), RecordingWindows::controlsWidth);
        QCOMPARE(controls->x(), free.x() + (free.width() - RecordingWindows::controlsWidth) / 2);
        QCOMPARE(controls->y(), free.y() + RecordingWindows::controlsTopMargin);
        QVERIFY(controls->flags() & Qt::WindowDoesNotAcceptFocus);
        m_workflow->speak(0.0);
        m_workflow->tick(2.0);
        QCOMPARE(QuickItems::plainText(item(controls, QStringLiteral("elapsed"))), QStringLiteral("0:02"));
        QCOMPARE(QuickItems::plainText(item(controls, QStringLiteral("microphoneLabel"))),
                 QStringLiteral("Mic connected"));

        auto* pauseButton = qobject_cast<QQuickItem*>(item(controls, QStringLiteral("pauseButton")));
        QTest::mouseClick(
            controls, Qt::LeftButton, {},
            pauseButton->mapToScene(QPointF(pauseButton->width() / 2, pauseButton->height() / 2)).toPoint());
        Workflow::drain();
        QTRY_VERIFY(coordinator().isPaused());
        QVERIFY(item(controls, QStringLiteral("pausedMark"))->property("visible").toBool());
        click(controls, QStringLiteral("pauseButton"));
        QTRY_VERIFY(!coordinator().isPaused());

        click(controls, QStringLiteral("stopButton"));
        Workflow::drain();
        QTRY_VERIFY(m_windows->reviewWindow());
        QQuickView* review = m_windows->reviewWindow();
        QVERIFY(QTest::qWaitForWindowExposed(review));
        QCOMPARE(review->title(), QStringLiteral("Review Recording"));
        QVERIFY(!controls->isVisible());
        QVERIFY(QuickItems::plainText(item(review, QStringLiteral("info"))).startsWith(QStringLiteral("0:02 · ")));
    }

    void theMicrophoneBadgeFollowsTheSound() {
        record();
        QVERIFY(m_controls->showsMicrophone());
        QCOMPARE(m_controls->microphoneLabel(), QStringLiteral("Mic on"));
        QCOMPARE(m_controls->microphoneHelp(), QStringLiteral("Waiting for microphone signal from system."));
        QCOMPARE(m_controls->microphoneTone(), RecordingControlsViewModel::Secondary);
        QCOMPARE(m_controls->microphoneSymbol(), QStringLiteral("mic.fill"));

        m_workflow->release(ScreenRecordingCoordinator::micWatchdogInterval);
        QVERIFY(coordinator().micInputWarning());
        QCOMPARE(m_controls->microphoneLabel(), QStringLiteral("No mic"));
        QCOMPARE(m_controls->microphoneHelp(), *coordinator().micInputWarning());
        QCOMPARE(m_controls->microphoneTone(), RecordingControlsViewModel::Warning);
        QCOMPARE(m_controls->microphoneSymbol(), QStringLiteral("mic.slash.fill"));

        m_workflow->speak(0.0);
        QCOMPARE(m_controls->microphoneLabel(), QStringLiteral("Mic connected"));
        QCOMPARE(m_controls->microphoneHelp(), QStringLiteral("Microphone audio is being saved to the recording."));
        QCOMPARE(m_controls->microphoneTone(), RecordingControlsViewModel::Connected);
    }

    void soundNotYetWrittenSaysTheSignalIsThere() {
        m_workflow->rig.writers.prepare = [](WriterRecord& record) { record.refuseSamples = 1000; };
        record();
        m_workflow->speak(0.0);
        QVERIFY(coordinator().micSamplesReceivedFromSystem());
        QCOMPARE(m_controls->microphoneLabel(), QStringLiteral("Mic on"));
        QCOMPARE(m_controls->microphoneHelp(),
                 QStringLiteral("Microphone signal detected. Waiting for audio to be written."));
    }

    void withoutTheMicrophoneThereIsNoBadge() {
        record(withMicrophone(false));
        QVERIFY(!m_controls->showsMicrophone());
        QVERIFY(!item(m_windows->controlsWindow(), QStringLiteral("microphoneBadge"))->property("visible").toBool());
    }

    void closingTheReviewDeletesTheMovieAsDiscardDoes() {
        record();
        m_workflow->speakAndStop();
        QQuickView* review = m_windows->reviewWindow();
        QVERIFY(review);
        QVERIFY(QTest::qWaitForWindowExposed(review));
        const QString file = movie();
        QVERIFY(QFileInfo::exists(file));
        QVERIFY(review->close());
        Workflow::drain();
        QTRY_VERIFY(!QFileInfo::exists(file));
        QCOMPARE(m_previewCancels, 1);
        QVERIFY(!coordinator().pendingPreview());
        QVERIFY(m_outcomes.isEmpty());
    }

    void attachStagesTheMovieAndClosesTheReview() {
        record();
        m_workflow->speakAndStop();
        QQuickView* review = m_windows->reviewWindow();
        QVERIFY(QTest::qWaitForWindowExposed(review));
        click(review, QStringLiteral("attachButton"));
        Workflow::drain();
        QTRY_COMPARE(m_outcomes.size(), 1);
        QVERIFY(std::holds_alternative<StagedAttachment>(m_outcomes.first()));
        QVERIFY(!review->isVisible());
        QVERIFY(!m_windows->review().isPending());
    }

    void saveProposesTheDatedNameAndKeepsTheReview() {
        record();
        m_workflow->speakAndStop();
        QCOMPARE(m_windows->review().proposedSaveName(), QStringLiteral("Screen Recording 2026-11-27 at 14.05.09.mov"));
        QTemporaryDir saved;
        QString proposed;
        m_windows->review().exporter()->setDestinationChooser([&](const QUrl&, const QUrl& file) {
            proposed = file.fileName();
            return std::optional(QUrl::fromLocalFile(saved.filePath(QStringLiteral("copy.mov"))));
        });
        click(m_windows->reviewWindow(), QStringLiteral("saveButton"));
        QCOMPARE(proposed, QStringLiteral("Screen Recording 2026-11-27 at 14.05.09.mov"));
        QCOMPARE(QFileInfo(saved.filePath(QStringLiteral("copy.mov"))).size(), QFileInfo(movie()).size());
        QVERIFY(m_windows->review().isPending());
        QVERIFY(m_windows->reviewWindow()->isVisible());
        QVERIFY(m_outcomes.isEmpty());
    }
};

NORVANEBAR_TEST_MAIN(RecordingWindowsTest)
#include "RecordingWindowsTest.moc"
