#pragma once

#include "core/compose/StagedAttachment.h"
#include "core/compose/TaskDraft.h"
#include "core/compose/TemplateActions.h"
#include "core/settings/SettingsStore.h"
#include "core/shell/ScreenRecordingCoordinator.h"

#include <QObject>
#include <functional>
#include <optional>

// The way into a screen recording from the tray, the composer and the hot key, and the way of its
// movie into the draft: the setup sheet, the picker, and the message of a failed recording. The
// popover goes away while the person records and comes back for the result. Main thread only.
class ScreenRecordingFlow : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool showScreenRecordingSetup READ showScreenRecordingSetup NOTIFY showScreenRecordingSetupChanged)
    Q_PROPERTY(QString screenRecordingError READ screenRecordingErrorText NOTIFY screenRecordingErrorChanged)

public:
    // Everything given must outlive this object; `showComposeTab` puts the popover on its Create tab.
    ScreenRecordingFlow(ScreenRecordingCoordinator& coordinator, SettingsStore& settings, TemplateActions& templates,
                        TaskDraft& draft, std::function<void()> showComposeTab, QObject* parent = nullptr);

    bool showScreenRecordingSetup() const { return m_showScreenRecordingSetup; }
    const std::optional<ScreenRecordingStartMode>& pendingRecordingMode() const { return m_pendingRecordingMode; }
    const std::optional<QString>& screenRecordingError() const { return m_screenRecordingError; }
    QString screenRecordingErrorText() const { return m_screenRecordingError.value_or(QString()); }
    void setScreenRecordingError(std::optional<QString> error);

    // Opens the popover on the setup sheet for a recording that enters the draft as `mode` says;
    // nothing while a recording is being chosen, runs or waits in review.
    void startScreenRecording(ScreenRecordingStartMode mode);
    // The recording shortcut, the way to end a recording from the keyboard: stops the recording
    // that runs, and otherwise starts one as startScreenRecording does.
    void startOrStopScreenRecording(ScreenRecordingStartMode mode);
    // The sheet's Cancel.
    void cancelScreenRecordingSetup();
    // The sheet's "Choose Screen…": closes the popover and opens the picker.
    void confirmScreenRecordingSetup(const RecordingConfiguration& configuration);
    void applyRecordedAttachment(const StagedAttachment& attachment, const ScreenRecordingStartMode& mode);

signals:
    void showScreenRecordingSetupChanged();
    void screenRecordingErrorChanged();
    void popoverShowRequested();
    void popoverCloseRequested();

private:
    void setShowScreenRecordingSetup(bool shown);
    QCoro::Task<> applyTemplate(TaskTemplate applied, StagedAttachment attachment);

    ScreenRecordingCoordinator& m_coordinator;
    SettingsStore& m_settings;
    TemplateActions& m_templates;
    TaskDraft& m_draft;
    std::function<void()> m_showComposeTab;
    bool m_showScreenRecordingSetup = false;
    std::optional<ScreenRecordingStartMode> m_pendingRecordingMode;
    std::optional<QString> m_screenRecordingError;
};
