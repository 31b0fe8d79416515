#include "desktop/recording/ScreenRecordingSetupViewModel.h"
#include "support/AppStateFixture.h"
#include "support/ScriptedRecordingWorkflow.h"
#include "support/TemporaryFolderTesting.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

using namespace ScriptedRecording;

// The popover's side of a recording over the central state as the app builds it for a desktop that
// lends no recording pieces, and over a scripted picker that remembers a screen.
class ScreenRecordingSetupViewModelTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TemporaryFolderOverride> m_temporary;
    std::unique_ptr<AppStateFixture> m_fixture;
    ContentPicker m_picker;
    std::unique_ptr<ScreenRecordingSetupViewModel> m_setup;

    AppState& app() const { return m_fixture->app(); }

private slots:
    void init() {
        m_temporary = std::make_unique<TemporaryFolderOverride>();
        m_fixture = std::make_unique<AppStateFixture>();
        m_fixture->start();
        m_picker = ContentPicker();
        m_setup = std::make_unique<ScreenRecordingSetupViewModel>(app().screenRecording(), m_picker, app().settings());
    }

    void cleanup() {
        m_setup.reset();
        m_fixture.reset();
        m_temporary.reset();
    }

    void theComposersButtonOpensTheSheetForARecordingThatJoinsTheDraft() {
        QSignalSpy shown(m_setup.get(), &ScreenRecordingSetupViewModel::setupShownChanged);
        m_setup->recordScreen();
        QVERIFY(m_setup->setupShown());
        QCOMPARE(shown.count(), 1);
        QCOMPARE(app().screenRecording().pendingRecordingMode(),
                 std::optional<ScreenRecordingStartMode>(ScreenRecordingStartModes::AppendToDraft{}));
        m_setup->cancel();
        QVERIFY(!m_setup->setupShown());
        QVERIFY(!app().screenRecording().pendingRecordingMode());
    }

    void aDesktopWithoutRecordingSaysSoAndTheAlertIsDismissed() {
        QSignalSpy errors(m_setup.get(), &ScreenRecordingSetupViewModel::errorChanged);
        m_setup->recordScreen();
        m_setup->chooseScreen();
        QVERIFY(!m_setup->setupShown());
        QCOMPARE(m_setup->error(),
                 QStringLiteral("Recording failed: Screen recording isn't available on this desktop."));
        QCOMPARE(errors.count(), 1);
        QVERIFY(!app().recordingCoordinator().isActive());
        m_setup->dismissError();
        QCOMPARE(m_setup->error(), QString());
    }

    void theScreenRememberedCanBeForgotten() {
        m_picker.remembered = true;
        QVERIFY(m_setup->remembersScreen());
        QSignalSpy remembered(m_setup.get(), &ScreenRecordingSetupViewModel::remembersScreenChanged);
        m_setup->forgetScreen();
        QVERIFY(!m_setup->remembersScreen());
        QCOMPARE(remembered.count(), 1);
    }

    void theSheetsChoicesAreTheSavedDefaults() {
        m_setup->choices()->setCaptureMicrophone(false);
        QVERIFY(!app().settings().settings().recordingCaptureMicrophone);
        m_setup->choices()->chooseIncludeFacecam(true);
        QVERIFY(app().settings().settings().recordingIncludeFacecam);
        QVERIFY(app().settings().settings().recordingFacecamStyle.isVisible);
    }
};

NORVANEBAR_TEST_GUILESS_MAIN(ScreenRecordingSetupViewModelTest)
#include "ScreenRecordingSetupViewModelTest.moc"
